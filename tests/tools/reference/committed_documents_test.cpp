// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/dissector.h"
#include "tools/reference/protocol_page.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace buttondriver::documents {
namespace {

std::string committed(const std::string &file) {
  std::ifstream stream(SOURCE_FOLDER "/" + file, std::ios::binary);
  EXPECT_TRUE(stream.is_open()) << file;
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Empty when both are the same; only the first line, because these files are long.
std::string first_difference(const std::string &file, const std::string &generated) {
  std::istringstream kept(committed(file));
  std::istringstream made(generated);
  std::string kept_line;
  std::string made_line;
  for (int number = 1;; ++number) {
    const bool has_kept = static_cast<bool>(std::getline(kept, kept_line));
    const bool has_made = static_cast<bool>(std::getline(made, made_line));
    if (!has_kept && !has_made)
      return "";
    if (has_kept != has_made || kept_line != made_line)
      return file + ":" + std::to_string(number) + " is '" + (has_kept ? kept_line : "missing") + "' instead of '" +
             (has_made ? made_line : "missing") + "'; build the target update_protocol_documents";
  }
}

TEST(CommittedDocumentsTest, hold_what_the_generator_prints) {
  EXPECT_EQ(first_difference("docs/protocol.md", protocol_page()), "");
  EXPECT_EQ(first_difference("tools/wireshark/buttondriver.lua", wireshark_dissector()), "");
}

TEST(CommittedDocumentsTest, count_as_stale_when_a_line_differs_is_missing_or_too_much) {
  const std::string page = committed("docs/protocol.md");
  std::string changed = page;
  changed.replace(changed.find("3003"), 4, "3004");
  EXPECT_NE(first_difference("docs/protocol.md", changed).find("docs/protocol.md:6 "), std::string::npos);
  EXPECT_NE(first_difference("docs/protocol.md", page + "more\n"), "");
  EXPECT_NE(first_difference("docs/protocol.md", page.substr(0, page.size() / 2)), "");
}

} // namespace
} // namespace buttondriver::documents
