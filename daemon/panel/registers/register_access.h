// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// Reads and writes of FPGA registers. State is process-wide and has no lock: the layer is entered by one thread at a
/// time. Nothing here prints or retries; with no device every transfer fails and is still counted.
namespace buttondriver::panel {

/// Descriptor of the open register device; -1 when it could not be opened.
extern int fpga_reg_fd;
extern "C" {
/// Transfers tried so far, reads and writes, failed ones included. Programs that look at the daemon from outside know
/// it by this name, hence the linkage.
extern std::uint32_t spi_call_count;
}
/// How many of them the device did not carry out. A failure is not printed; this counter is its only trace.
extern std::uint32_t spi_failure_count;

/// Opens `path`, or the panel's own device node when `path` is null. Returns the descriptor, or -1.
int fpga_reg_open(const char *path);

/// One transfer of `count` words at `words`, a write, or a read when `read` is non-zero. With a count of 1 the word is
/// copied back from the device's answer in either direction, whether or not the transfer succeeded.
/// Returns the device's result, negative on failure.
int fpga_spi_transfer(int descriptor, std::uint32_t address, int read, std::uint16_t *words, std::uint32_t count);

/// The word at `address`; 0 when the transfer failed and left nothing.
std::uint16_t fpga_reg_read(int descriptor, std::uint32_t address);
int fpga_reg_write(int descriptor, std::uint32_t address, std::uint16_t *words, std::uint32_t count);

/// Writes the low 16 bits of `value` on fpga_reg_fd.
int fpga_reg_write16(std::uint32_t address, std::uint32_t value);
/// Writes `byte` in the high byte on fpga_reg_fd.
int fpga_reg_write8(std::uint32_t address, std::uint8_t byte);

} // namespace buttondriver::panel
