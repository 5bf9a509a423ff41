// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace buttondriver::buttonctl {

/// `text` as a whole decimal number from `lowest` to `highest`; `name` is what the message calls it.
Outcome<std::int32_t> parse_number(const QString &name, const QString &text, std::int32_t lowest, std::int32_t highest);

/// The numbers of a list such as "0-5,9", in its order: numbers and ranges that go up, commas between them, all from
/// `lowest` to `highest`. The failure has no text: who asks knows what else could have stood there.
Outcome<std::vector<std::int32_t>> parse_number_list(const QString &text, std::int32_t lowest, std::int32_t highest);

} // namespace buttondriver::buttonctl
