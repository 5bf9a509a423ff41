// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The kinds of steps in an input of connections_fuzzer.cpp. Their numbers stay: kept inputs have them.
namespace buttondriver::fuzz::steps {

enum Step : std::uint8_t {
  round,
  rounds,
  connect,
  pings,
  work,
  null_messages,
  empty_frames,
  any_bytes,
  frame_of_any_length,
  large_frame,
  frame_that_is_too_long,
  length_that_wraps,
  finish,
  close,
  reset,
  read_answers,
  pause,
  resume,
  hold_all,
  release_all,
  hold_null_messages,
  release_null_messages,
  hold,
  release,
  piece,
  room,
  refusals,
  count
};

} // namespace buttondriver::fuzz::steps
