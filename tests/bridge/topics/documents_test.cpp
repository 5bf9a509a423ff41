// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/documents/topics_page.h"
#include "bridge/topics/topic_commands.h"
#include "bridge/topics/topic_table.h"
#include "pictures.h"
#include "support/first_difference.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>

namespace buttondriver::bridge {
namespace {

std::string committed_page() {
  std::ifstream stream(TOPICS_PAGE, std::ios::binary);
  EXPECT_TRUE(stream.is_open());
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(TopicsPageTest, is_what_the_table_makes_of_it) {
  EXPECT_EQ(test::first_difference("docs/topics.md", committed_page(), topics_page()), "")
      << "build the target update_bridge_documents";
}

TEST(TopicsPageTest, has_each_topic_and_each_message_without_one) {
  const std::string page = topics_page();
  for (const TopicRow &row : topic_table) {
    EXPECT_NE(page.find("| `" + std::string(row.pattern) + "` |"), std::string::npos) << row.pattern;
    EXPECT_NE(page.find(row.example), std::string::npos) << row.example;
  }
  for (const char *name : {"TYPE_NULL_MESSAGE", "BMS_UploadImage", "BMS_Ping"})
    EXPECT_NE(page.find("| `" + std::string(name) + "` |"), std::string::npos) << name;
}

TEST(TopicsPageTest, has_examples_that_are_right) {
  const std::regex form("mosquitto_pub (?:-r )?(?:-n )?-t buttondriver/(?:hall|group/doors)/(?:do/)?([^ ]+)"
                        "(?: -m '?([^']*)'?| -f ([^ ]+))?");
  std::istringstream lines(topics_page());
  std::string line;
  int examples = 0;
  while (std::getline(lines, line)) {
    if (line.rfind("mosquitto_pub ", 0) != 0)
      continue;
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(line, parts, form)) << line;
    ++examples;
    const std::string file = parts[3];
    const bool takes_back = !parts[2].matched && file.empty();
    const QByteArray payload = takes_back      ? QByteArray("off")
                               : !file.empty() ? test::picture_file(2, 2, file == "logo.bmp" ? "BMP" : "PNG")
                                               : QByteArray::fromStdString(parts[2]);
    const Outcome<Command> command = command_of(QByteArray::fromStdString(parts[1]), payload);
    EXPECT_TRUE(command) << line << ": " << command.failure().text.toStdString();
  }
  EXPECT_GT(examples, static_cast<int>(std::size(topic_table)));
}

TEST(TopicsPageTest, quotes_the_error_that_there_is) {
  const Outcome<Command> command = command_of("led/24", "on");
  ASSERT_FALSE(command);
  EXPECT_NE(topics_page().find("\"error\":\"" + command.failure().text.toStdString() + "\""), std::string::npos);
}

} // namespace
} // namespace buttondriver::bridge
