// SPDX-License-Identifier: Apache-2.0
#include "logging/log_line.h"

#include "logging/message_handler.h"
#include "logging/visible_text.h"
#include "support/captured_log.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace buttondriver {
namespace {

using testing::ElementsAre;

TEST(LogLineTest, ends_every_item_with_one_blank) {
  test::CapturedLog log;
  debug_line() << "buttondriver: opcode = " << 17 << ", size = " << qint64{16};
  critical_line() << "unhandled switch case" << 4294967295U;
  EXPECT_THAT(log.take(), ElementsAre("debug: buttondriver: opcode =  17 , size =  16 ",
                                      "critical: unhandled switch case 4294967295 "));
}

TEST(LogLineTest, quotes_strings_and_lists) {
  test::CapturedLog log;
  debug_line() << QStringLiteral("/a b") << QStringList{QStringLiteral("/x"), QStringLiteral("/y")} << QStringList();
  EXPECT_THAT(log.take(), ElementsAre("debug: \"/a b\" (\"/x\", \"/y\") () "));
}

TEST(LogLineTest, puts_no_blank_after_a_line_feed) {
  test::CapturedLog log;
  debug_line() << "line = " << QStringLiteral("lcd 100") << line_feed;
  debug_line() << line_feed << 5;
  EXPECT_THAT(log.take(), ElementsAre("debug: line =  \"lcd 100\" \n", "debug: \n5 "));
}

TEST(MessageHandlerTest, keeps_the_text_with_its_last_blank) {
  testing::internal::CaptureStderr();
  install_message_handler();
  debug_line() << "update timer stoped";
  qInstallMessageHandler(nullptr);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "update timer stoped \n");
}

TEST(VisibleTextTest, shows_control_characters_as_numbers) {
  EXPECT_EQ(visible_text("a\nb\x1b[2J\x7f\x9b"), "a\\x0ab\\x1b[2J\\x7f\\x9b");
  EXPECT_EQ(visible_text("caf\xe9 100% \\n"), "caf\xe9 100% \\n");
}

} // namespace
} // namespace buttondriver
