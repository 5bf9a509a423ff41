// SPDX-License-Identifier: Apache-2.0
#include "logging/log_line.h"

#include "logging/message_handler.h"
#include "logging/visible_text.h"
#include "support/captured_log.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <cstring>
#include <limits>
#include <string>
#include <unistd.h>
#include <utility>

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

TEST(LogLineTest, writes_numbers_of_any_length_anywhere) {
  const std::pair<qint64, const char *> rows[] = {
      {0, "0"},     {9, "9"},   {10, "10"},   {99, "99"},
      {100, "100"}, {-1, "-1"}, {-10, "-10"}, {std::numeric_limits<qint64>::min(), "-9223372036854775808"}};
  for (const auto &[number, digits] : rows) {
    for (std::size_t before = 225; before < 245; ++before) {
      test::CapturedLog log;
      const std::string text(before, 'x');
      debug_line() << text.c_str() << number << number;
      EXPECT_THAT(log.take(), ElementsAre("debug: " + text + ' ' + digits + ' ' + digits + ' '));
    }
  }
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
  EXPECT_EQ(visible_text("a\nb\x1b[2J\x7f"), "a\\x0ab\\x1b[2J\\x7f");
  for (int code = 0; code <= 0xFF; ++code) {
    const std::string character(1, static_cast<char>(code));
    char number[8];
    std::snprintf(number, sizeof number, "\\x%02x", static_cast<unsigned>(code));
    EXPECT_EQ(visible_text(character), code < 0x20 || code == 0x7F ? number : character) << code;
  }
}

TEST(VisibleTextTest, finds_control_characters_anywhere) {
  for (const char *plain : {"01234567890123456789012345", "\u00dc\u20ac\u65e5\u00dc\u20ac\u65e5 ~\x20\u00ff\u00ff"})
    for (const auto &[control, number] :
         {std::pair('\n', "\\x0a"), std::pair('\x7f', "\\x7f"), std::pair('\0', "\\x00")})
      for (std::size_t at = 0; at <= std::strlen(plain); ++at) {
        std::string text = plain;
        text.insert(at, 1, control);
        std::string expected = plain;
        expected.insert(at, number);
        EXPECT_EQ(visible_text(text), expected);
      }
}

TEST(VisibleTextTest, leaves_texts_of_any_encoding_whole) {
  for (const char *text : {"caf\xe9 100% \\n", "\u00dc \u20ac \u65e5", "\x9b\x80\xff"})
    EXPECT_EQ(visible_text(text), text);
}

} // namespace
} // namespace buttondriver
