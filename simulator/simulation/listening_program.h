// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace buttondriver::simulator {

/// Who listens on a TCP port of this machine, on any of its addresses: "buttondriver (pid 123)", or "another program"
/// where this user may not see whose the socket is. Nothing when nobody does, or when the system does not tell.
/// `processes` is where the system tells about processes and sockets.
std::optional<std::string> listening_program(std::uint16_t port, const std::string &processes = "/proc");

} // namespace buttondriver::simulator
