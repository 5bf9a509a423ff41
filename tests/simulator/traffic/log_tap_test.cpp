// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/log_tap.h"

#include "logging/standard_output.h"
#include "support/captured_log.h"

#include <gmock/gmock.h>

#include <QDebug>

namespace buttondriver::simulator {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Source = LogEntry::Source;

std::vector<std::string> texts(const LogTap::Part &part) {
  std::vector<std::string> result;
  for (const LogEntry &entry : part.entries)
    result.push_back(entry.text.toStdString());
  return result;
}

TEST(LogTapTest, hears_both_channels_which_go_on_as_before) {
  test::CapturedLog log;
  test::CapturedOutput output;
  const LogTap tap;
  qDebug("%s", "an event ");
  qCritical("%s", "a fault");
  print("output %d\n", 7);
  print_line("a line");
  const LogTap::Part part = tap.since(0, 10);
  EXPECT_EQ(part.last, 4U);
  EXPECT_THAT(texts(part), ElementsAre("an event", "a fault", "output 7", "a line"));
  EXPECT_EQ(part.entries[0].source, Source::event);
  EXPECT_EQ(part.entries[1].source, Source::fault);
  EXPECT_EQ(part.entries[2].source, Source::output);
  EXPECT_EQ(output.take(), "output 7\na line\n");
  EXPECT_THAT(log.take(), ElementsAre("debug: an event ", "critical: a fault"));
}

TEST(LogTapTest, hears_nothing_once_it_is_gone) {
  test::CapturedLog log;
  test::CapturedOutput output;
  { const LogTap tap; }
  qDebug("%s", "later");
  print_line("later");
  EXPECT_THAT(log.take(), ElementsAre("debug: later"));
  EXPECT_EQ(output.take(), "later\n");
}

TEST(LogTapTest, gives_the_newest_of_what_is_new) {
  LogTap tap;
  for (const char *text : {"a", "b", "c", "d"})
    tap.add(Source::event, text);
  EXPECT_THAT(texts(tap.since(1, 10)), ElementsAre("b", "c", "d"));
  EXPECT_THAT(texts(tap.since(1, 2)), ElementsAre("c", "d"));
  EXPECT_THAT(texts(tap.since(4, 10)), IsEmpty());
  EXPECT_EQ(tap.since(1, 2).left_out, 1U);
  EXPECT_EQ(tap.since(1, 10).left_out, 0U);
  tap.forget();
  EXPECT_EQ(tap.since(1, 10).left_out, 0U) << "nobody misses what was forgotten";
  EXPECT_THAT(texts(tap.since(1, 10)), IsEmpty());
  EXPECT_EQ(tap.since(0, 10).last, 4U);
}

TEST(LogTapTest, is_bounded) {
  LogTap tap;
  for (int i = 0; i < 501; ++i)
    tap.add(Source::event, QByteArray(2000, 'x'));
  const LogTap::Part part = tap.since(0, 10000);
  EXPECT_EQ(part.entries.size(), 500U);
  EXPECT_EQ(part.entries[0].text.size(), 1000);
}

} // namespace
} // namespace buttondriver::simulator
