// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace buttondriver::documents {

/// What a client can run into, as the daemon has it, with the section's title.
std::string limits_section();

/// Bytes of the largest message, without its length.
std::uint32_t largest_message();

} // namespace buttondriver::documents
