// SPDX-License-Identifier: Apache-2.0
#include "panel/registers/register_access.h"

#include "panel/registers/ioctl_register_device.h"
#include "panel/registers/registers.h"

#include <cstring>

namespace buttondriver::panel {

int fpga_reg_fd = -1;
std::uint32_t spi_call_count = 0;
std::uint32_t spi_failure_count = 0;

namespace {

IoctlRegisterDevice real_device;
RegisterDevice *device_in_use = &real_device;

/// Fills in the address word of `record` and returns the request that goes with its form.
unsigned long set_address(TransferRecord &record, std::uint32_t address, bool read) {
  if (address < long_form_start) {
    record.address_low = static_cast<std::uint16_t>((address & short_form::address_mask) | short_form::always_one |
                                                    (read ? short_form::read : 0));
    return short_form_request;
  }
  const std::uint32_t word = (address & long_form::address_mask) | long_form::always_one | (read ? long_form::read : 0);
  record.address_low = static_cast<std::uint16_t>(word);
  record.address_high = static_cast<std::uint16_t>(word >> 16);
  return long_form_request;
}

} // namespace

void use_register_device(RegisterDevice *device) { device_in_use = device ? device : &real_device; }

int fpga_reg_open(const char *path) { return device_in_use->open(path ? path : register_device_path); }

int fpga_spi_transfer(int descriptor, std::uint32_t address, int read, std::uint16_t *words, std::uint32_t count) {
  ++spi_call_count;
  TransferRecord record;
  const unsigned long request = set_address(record, address, read != 0);
  record.count = count;
  if (count == 1)
    std::memcpy(&record.value, words, sizeof *words);
  else if (count > 1)
    record.value = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(words));
  const int result = device_in_use->transfer(descriptor, request, record, words);
  if (result < 0)
    ++spi_failure_count;
  if (count == 1)
    std::memcpy(words, &record.value, sizeof *words);
  return result;
}

std::uint16_t fpga_reg_read(int descriptor, std::uint32_t address) {
  std::uint16_t word = 0;
  fpga_spi_transfer(descriptor, address, 1, &word, 1);
  return word;
}

int fpga_reg_write(int descriptor, std::uint32_t address, std::uint16_t *words, std::uint32_t count) {
  return fpga_spi_transfer(descriptor, address, 0, words, count);
}

int fpga_reg_write16(std::uint32_t address, std::uint32_t value) {
  auto word = static_cast<std::uint16_t>(value);
  return fpga_reg_write(fpga_reg_fd, address, &word, 1);
}

int fpga_reg_write8(std::uint32_t address, std::uint8_t byte) {
  return fpga_reg_write16(address, std::uint32_t{byte} << 8);
}

} // namespace buttondriver::panel
