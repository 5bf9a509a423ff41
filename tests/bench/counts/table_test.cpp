// SPDX-License-Identifier: Apache-2.0
#include "counts/table/table.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace buttondriver::counts {
namespace {

constexpr const char *csv = "# some build\n"
                            "message,instructions,allocations,log_writes,transfers,sends\n"
                            "ping,3300,4.14062,0.015625,0,0.015625\n"
                            "text,192400,40,1,18,0\n";

TEST(TableTest, is_read_from_csv) {
  const Table table = table_of(csv);
  EXPECT_EQ(table.build, "some build");
  ASSERT_EQ(table.rows.size(), 2U);
  EXPECT_EQ(table.rows[0].name, "ping");
  EXPECT_EQ(table.rows[0][Column::instructions], 3300);
  EXPECT_EQ(table.rows[0][Column::log_writes], 0.015625);
  EXPECT_EQ(table.rows[1].name, "text");
  EXPECT_EQ(table.rows[1][Column::allocations], 40);
  EXPECT_EQ(table.rows[1][Column::transfers], 18);
}

TEST(TableTest, is_written_as_it_was_read) { EXPECT_EQ(csv_of(table_of(csv)), csv); }

TEST(TableTest, is_written_without_what_varies) {
  Table table = table_of(csv);
  table.rows[0][Column::polls] = 7;
  EXPECT_EQ(csv_of(table), csv);
}

TEST(TableTest, tells_people_all_columns) {
  Table table{"some build", {Row{"ping", {}}}};
  table.rows[0][Column::instructions] = 3295.4;
  table.rows[0][Column::allocations] = 4.1406;
  table.rows[0][Column::log_writes] = 0.015625;
  table.rows[0][Column::others] = 2;
  EXPECT_EQ(
      markdown_of(table),
      "| Message | instructions | allocations | log_writes | transfers | sends | reads | polls | futexes | others |\n"
      "|---|--:|--:|--:|--:|--:|--:|--:|--:|--:|\n"
      "| `ping` | 3295 | 4.14 | 0.016 | 0 | 0 | 0 | 0 | 0 | 2 |\n"
      "\nOne message each; some build.\n");
}

TEST(TableTest, that_makes_no_sense_is_an_error) {
  for (const char *text :
       {"", "message,instructions\nping,1\n", "# some build\n", "# some build\ntext,instructions\n",
        "# some build\nmessage,instructions\nping\n", "# some build\nmessage,instructions\nping,1,2\n",
        "# some build\nmessage,instructions\nping,many\n", "# some build\nmessage,seconds\nping,1\n",
        "# some build\nmessage,instructions\n\n"})
    EXPECT_THROW(table_of(text), std::runtime_error) << text;
}

TEST(RowTest, is_the_difference_for_each_message) {
  Row before;
  Row after;
  before[Column::instructions] = 5000;
  after[Column::instructions] = 29000;
  before[Column::sends] = 10;
  after[Column::sends] = 11;
  const Row row = row_of("ping", before, after, 8);
  EXPECT_EQ(row.name, "ping");
  EXPECT_EQ(row[Column::instructions], 3000);
  EXPECT_EQ(row[Column::sends], 0.125);
  EXPECT_EQ(row[Column::polls], 0);
}

} // namespace
} // namespace buttondriver::counts
