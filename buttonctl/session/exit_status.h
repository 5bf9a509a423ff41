// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Exit statuses of the program.
namespace buttondriver::buttonctl {

inline constexpr int exit_done = 0;
inline constexpr int exit_unreachable = 1; ///< no connection, a lost one, or no answer; the doctor found a fault
inline constexpr int exit_damaged = 1;     ///< something that was to be decoded is cut off or unknown
inline constexpr int exit_bad_usage = 2;   ///< the command line, a file that it names, or a line of such a file
inline constexpr int exit_differs = 3;     ///< a picture is not the expected one, or there is no expected one
inline constexpr int exit_timed_out = 4;   ///< an expected state did not come in time

} // namespace buttondriver::buttonctl
