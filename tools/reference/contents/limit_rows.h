// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace buttondriver::documents {

/// A limit that a client can run into, in Markdown.
struct LimitRow {
  std::string what;
  std::string how_much;
  std::string beyond; ///< what happens then
};

/// All of them, as the daemon has them.
std::vector<LimitRow> limit_rows();

/// What begins to wait, when, and when that ends; in Markdown.
struct WaitRow {
  std::string when;
  std::string what_happens;
};

/// The pauses and holds that the limits speak of.
std::vector<WaitRow> wait_rows();

/// Bytes of the largest message, without its length.
std::uint32_t largest_message();

} // namespace buttondriver::documents
