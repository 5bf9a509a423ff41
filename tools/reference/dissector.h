// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace buttondriver::documents {

/// A dissector of the command protocol for Wireshark, in Lua.
std::string wireshark_dissector();

/// A name in the form of Wireshark's filters: "SetLEDState" is "set_led_state", "_screen_id" is "screen_id".
std::string filter_name(std::string_view name);

} // namespace buttondriver::documents
