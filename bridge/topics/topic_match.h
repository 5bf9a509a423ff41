// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/topic_table.h"
#include "outcome/outcome.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace buttondriver::bridge {

/// Which row of the table a topic belongs to, and the first fields of its message after the opcode: the numbers in the
/// topic, -1 for "all", and what the row says of the others.
struct TopicMatch {
  const TopicRow *row = nullptr;
  std::array<std::int16_t, 3> fields{};
};

/// `tail`: the levels below the panel or the group. The failure says what is wrong with it, or which topic may have
/// been meant. Takes no memory unless it fails.
Outcome<TopicMatch> match_topic(std::string_view tail);

/// `text` as a decimal number in that range, without a sign and without zeros before it. False when it is none.
bool read_number(std::string_view text, std::int64_t lowest, std::int64_t highest, std::int64_t *number);

} // namespace buttondriver::bridge
