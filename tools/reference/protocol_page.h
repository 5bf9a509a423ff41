// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::documents {

/// The reference page of the command protocol, in Markdown: how messages are framed, what every message means, byte by
/// byte, and what the daemon does with input that is none.
std::string protocol_page();

} // namespace buttondriver::documents
