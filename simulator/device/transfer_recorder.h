// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_file.h"
#include "simulator/device/transfer.h"

#include <chrono>
#include <string>

namespace buttondriver::simulator {

/// Writes one line for every transfer to a file: microseconds since the recorder was made (monotonic), "w" or "r", the
/// register address in hexadecimal, the number of words, and the words in hexadecimal, parted by single blanks:
///
///     51234 w 0900 1 6500
///
/// Each line is in the file when `record` returns; that it cannot be written is told once on standard error. Called by
/// one thread at a time.
class TransferRecorder {
public:
  explicit TransferRecorder(const std::string &file_name);

  /// False when the file could not be opened; then nothing is recorded.
  bool isOpen() const { return _file != nullptr; }
  void record(const Transfer &transfer);

private:
  std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
  OwnedFile _file;
  bool _has_failed = false;
};

} // namespace buttondriver::simulator
