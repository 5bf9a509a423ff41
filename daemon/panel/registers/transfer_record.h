// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

namespace buttondriver::panel {

/// The argument of one register transfer, in the device's own byte order (little-endian).
///
/// Short form, for register addresses below long_form_start: `address_low` holds the address word, bits 0-12 address,
/// bit 13 always 1, bit 14 direction (1 read), bit 15 always 0; `address_high` is not used.
/// Long form: both halves hold the address word, bits 0-28 address, bit 29 always 1, bit 30 direction, bit 31 always 0.
/// With a count of 1 the low half of `value` is the word itself, in for a write and out for a read; with more it is the
/// address of the caller's words; with none it means nothing.
struct TransferRecord {
  std::uint32_t reserved = 0;
  std::uint16_t address_low = 0;
  std::uint16_t address_high = 0;
  std::uint32_t count = 0;
  std::uint32_t value = 0;
};

static_assert(sizeof(TransferRecord) == 16);
static_assert(offsetof(TransferRecord, reserved) == 0);
static_assert(offsetof(TransferRecord, address_low) == 4);
static_assert(offsetof(TransferRecord, address_high) == 6);
static_assert(offsetof(TransferRecord, count) == 8);
static_assert(offsetof(TransferRecord, value) == 12);

/// The first register address that takes the long form.
inline constexpr std::uint32_t long_form_start = 0x2000;

/// Read-write requests of type '$' with a 16-byte argument, numbers 0 and 1.
inline constexpr unsigned long short_form_request = 0xC0102400;
inline constexpr unsigned long long_form_request = 0xC0102401;

namespace short_form {
inline constexpr unsigned address_mask = 0x1FFF;
inline constexpr unsigned always_one = 1U << 13;
inline constexpr unsigned read = 1U << 14;
inline constexpr unsigned always_zero = 1U << 15;
} // namespace short_form

namespace long_form {
inline constexpr std::uint32_t address_mask = 0x1FFFFFFF;
inline constexpr std::uint32_t always_one = 1U << 29;
inline constexpr std::uint32_t read = 1U << 30;
inline constexpr std::uint32_t always_zero = 1U << 31;
} // namespace long_form

} // namespace buttondriver::panel
