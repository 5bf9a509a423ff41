// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::documents {

/// What a client can run into, as the daemon has it, with the section's title.
std::string limits_section();

} // namespace buttondriver::documents
