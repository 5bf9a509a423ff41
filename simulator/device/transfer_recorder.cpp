// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/transfer_recorder.h"

#include "logging/standard_output.h"

#include <cerrno>
#include <cinttypes>
#include <cstring>

namespace buttondriver::simulator {

TransferRecorder::TransferRecorder(const std::string &file_name) : _file(std::fopen(file_name.c_str(), "we")) {}

void TransferRecorder::record(const Transfer &transfer) {
  if (!_file)
    return;
  static constexpr char digits[] = "0123456789abcdef";
  const auto elapsed =
      std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - _start).count();
  std::fprintf(_file.get(), "%" PRId64 " %c %04" PRIx32 " %" PRIu32, static_cast<std::int64_t>(elapsed),
               transfer.is_read ? 'r' : 'w', transfer.address, transfer.count);
  for (std::uint32_t i = 0; i < transfer.count; ++i) {
    const unsigned word = transfer.words[i];
    const char text[] = {' ', digits[word >> 12], digits[word >> 8 & 0xF], digits[word >> 4 & 0xF], digits[word & 0xF]};
    std::fwrite(text, 1, sizeof text, _file.get());
  }
  std::fputc('\n', _file.get());
  if (std::fflush(_file.get()) == 0 || _has_failed)
    return;
  _has_failed = true;
  print_error("buttondriver-sim: the recording cannot be written: %s\n", std::strerror(errno));
}

} // namespace buttondriver::simulator
