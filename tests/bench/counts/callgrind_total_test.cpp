// SPDX-License-Identifier: Apache-2.0
#include "counts/table/callgrind_total.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace buttondriver::counts {
namespace {

TEST(CallgrindTotalTest, is_the_number_of_the_summary) {
  EXPECT_EQ(callgrind_total("version: 1\npart: 2\n\nevents: Ir\nsummary: 5000000123\n\nfn=(1) main\n0 7\n"),
            5000000123.0);
}

TEST(CallgrindTotalTest, of_a_file_without_a_summary_is_an_error) {
  for (const char *dump : {"", "version: 1\nevents: Ir\n", "version: 1\nsummary: \n", "fn=(1) summary: 4\n"})
    EXPECT_THROW(callgrind_total(dump), std::runtime_error) << dump;
}

} // namespace
} // namespace buttondriver::counts
