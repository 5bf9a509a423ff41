// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/command_table.h"

#include "buttonctl/commands/batch_command.h"
#include "buttonctl/decode/decode_command.h"
#include "buttonctl/doctor/doctor_command.h"
#include "buttonctl/look/screenshot_command.h"
#include "buttonctl/look/state_command.h"
#include "buttonctl/look/watch_command.h"
#include "buttonctl/messages/by_name/message_command.h"
#include "buttonctl/messages/byte_commands.h"
#include "buttonctl/messages/daemon_commands.h"
#include "buttonctl/messages/lamp_commands.h"
#include "buttonctl/messages/screen_commands.h"
#include "buttonctl/recording/record_command.h"
#include "buttonctl/replay/replay_command.h"
#include "buttonctl/scenario/run_command.h"
#include "buttonctl/testing/test_command.h"

namespace buttondriver::buttonctl {

const CommandTable &command_table() {
  static const CommandTable table = {
      text_command(),       subtext_command(), image_command(),   blackout_command(), led_command(),
      status_command(),     toggle_command(),  upload_command(),  reconfig_command(), ping_command(),
      sleep_command(),      null_command(),    message_command(), raw_command(),      batch_command(),
      record_command(),     replay_command(),  decode_command(),  run_command(),      test_command(),
      screenshot_command(), state_command(),   watch_command(),   doctor_command(),
  };
  return table;
}

} // namespace buttondriver::buttonctl
