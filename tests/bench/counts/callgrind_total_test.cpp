// SPDX-License-Identifier: Apache-2.0
#include "counts/table/callgrind_total.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace buttondriver::counts {
namespace {

TEST(CallgrindTotalTest, is_the_sum_of_all_lines_and_not_the_summary) {
  EXPECT_EQ(callgrind_total("version: 1\nevents: Ir\nsummary: 9000000123\n\nfn=(1) main\n0 5000000123\n\n"
                            "totals: 5000000123\n"),
            5000000123.0);
}

TEST(CallgrindTotalTest, of_a_file_without_totals_is_an_error) {
  for (const char *dump : {"", "version: 1\nsummary: 4\n", "version: 1\ntotals: \n", "fn=(1) totals: 4\n"})
    EXPECT_THROW(callgrind_total(dump), std::runtime_error) << dump;
}

} // namespace
} // namespace buttondriver::counts
