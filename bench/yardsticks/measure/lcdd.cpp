// SPDX-License-Identifier: Apache-2.0
#include "soak/sample.h"
#include "yardsticks/measure/groups.h"
#include "yardsticks/running/lcdd_process.h"
#include "yardsticks/running/resident_memory.h"
#include "yardsticks/running/served.h"

namespace buttondriver::yardsticks {

Group measure_lcdd(const Setting &setting) {
  const Scale &scale = setting.scale;
  const std::unique_ptr<Served> daemon = serve_daemon(setting.daemon);
  LcddProcess lcdd(setting.lcdd);
  Comparison memory{"memory", "resident memory, idle", "LCDd", Unit::bytes, {}, {}, {}};
  memory.ours.push_back(settled_memory(daemon->pid()));
  memory.theirs.push_back(settled_memory(lcdd.pid()));

  const MessageKind line = message_kinds(scale)[1];
  Comparison rate{"text_line", line.title, "LCDd", Unit::rate, {}, {}, {}};
  alternate(
      scale.runs, [&] { rate.ours.push_back(daemon->secondsOfEach(line)); },
      [&] { rate.theirs.push_back(lcdd.secondsOfEach(line.count)); });
  Comparison reply{"reply", "a question to its answer", "LCDd", Unit::seconds, {}, {}, {}};
  alternate(
      scale.runs, [&] { reply.ours.push_back(soak::quantile(daemon->pingSeconds(scale.other_replies), 0.5)); },
      [&] { reply.theirs.push_back(soak::quantile(lcdd.replySeconds(scale.other_replies), 0.5)); });
  return {
      "lcdd",
      "LCDd",
      "What one would take instead where a panel shows text only: the server of LCDproc, as Debian 12 has it, with "
      "its driver that draws a screen of 20 x 4 characters as text, into nothing. Its commands are lines of text, "
      "and it answers each: a text of 16 characters is set, many times in a row, until all are answered. It draws "
      "its screen some times a second, whatever was set meanwhile; the daemon draws each line. It logs no commands; "
      "the daemon's log is read. The answer that is waited for is that of a ping, and that of such a command.",
      {rate, reply, memory}};
}

} // namespace buttondriver::yardsticks
