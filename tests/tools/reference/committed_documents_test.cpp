// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/dissector.h"
#include "tools/reference/protocol_manual.h"
#include "tools/reference/protocol_page.h"
#include "tools/reference/python_layouts.h"

#include "support/first_difference.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace buttondriver::documents {
namespace {

std::string committed(const std::string &file) {
  std::ifstream stream(SOURCE_FOLDER "/" + file, std::ios::binary);
  EXPECT_TRUE(stream.is_open()) << file;
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// Empty when the file is up to date.
std::string staleness(const std::string &file, const std::string &generated) {
  const std::string difference = test::first_difference(file, committed(file), generated);
  return difference.empty() ? "" : difference + "; build the target update_protocol_documents";
}

TEST(CommittedDocumentsTest, hold_what_the_generator_prints) {
  EXPECT_EQ(staleness("docs/protocol.md", protocol_page()), "");
  EXPECT_EQ(staleness("tools/wireshark/buttondriver.lua", wireshark_dissector()), "");
  EXPECT_EQ(staleness("python/buttondriver/catalogue.py", python_layouts()), "");
  EXPECT_EQ(staleness("packaging/manual/buttondriver-protocol.7", protocol_manual()), "");
}

TEST(CommittedDocumentsTest, have_the_daemons_limits_in_its_manual_page) {
  const auto page = with_limits(committed("packaging/manual/buttondriver.8"));
  ASSERT_TRUE(page);
  EXPECT_EQ(staleness("packaging/manual/buttondriver.8", *page), "");
}

TEST(CommittedDocumentsTest, count_as_stale_when_a_line_differs_is_missing_or_too_much) {
  const std::string page = committed("docs/protocol.md");
  std::string changed = page;
  changed.replace(changed.find("3003"), 4, "3004");
  EXPECT_NE(staleness("docs/protocol.md", changed).find("docs/protocol.md:6 "), std::string::npos);
  EXPECT_NE(staleness("docs/protocol.md", page + "more\n"), "");
  EXPECT_NE(staleness("docs/protocol.md", page.substr(0, page.size() / 2)), "");
  EXPECT_NE(staleness("docs/protocol.md", page.substr(0, page.size() - 1)), "");
}

} // namespace
} // namespace buttondriver::documents
