// SPDX-License-Identifier: Apache-2.0
#include "simulator/device/virtual_panel.h"

#include "logging/standard_output.h"
#include "panel/registers/registers.h"
#include "simulator/device/transfer_recorder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

namespace buttondriver::simulator {

namespace fpga_register = panel::fpga_register;
namespace led_command_bits = panel::led_command_bits;

namespace {

constexpr std::uint32_t tft_ports_end = fpga_register::tft_data_base + 2 * panel::all_controllers;
constexpr int intensity_level_bits = 0x3F;
constexpr unsigned led_id_bits = 0x1F;
constexpr unsigned led_kind_bits = led_command_bits::button_led | led_command_bits::status_indicator;

/// The bytes of a record as a device would find them.
std::string hex_bytes(const panel::TransferRecord &record) {
  unsigned char bytes[sizeof record];
  std::memcpy(bytes, &record, sizeof record);
  std::string text;
  for (const unsigned char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

void say_refused(const char *reason, unsigned long request, const panel::TransferRecord &record) {
  print("buttondriver-sim: no device would accept this transfer, %s: request 0x%lx, record %s\n", reason, request,
        hex_bytes(record).c_str());
}

} // namespace

int VirtualPanel::open(const char *) { return 0; }

int VirtualPanel::transfer(int, unsigned long request, panel::TransferRecord &record, std::uint16_t *words) {
  const std::lock_guard lock(_mutex);
  ++_counters.transfers;
  // A single word lies in the low half of the record's value.
  std::uint16_t word = 0;
  std::memcpy(&word, &record.value, sizeof word);
  const auto content = read_record(request, record, record.count == 1 ? &word : words);
  if (const auto *refused = std::get_if<RefusedTransfer>(&content))
    return refuseLocked(refused->reason, request, record);
  const auto &transfer = std::get<Transfer>(content);
  carryOut(transfer);
  countChanges();
  if (transfer.count == 1)
    std::memcpy(&record.value, &word, sizeof word);
  if (_recorder)
    _recorder->record(transfer);
  return 0;
}

int VirtualPanel::refuse(const char *reason, unsigned long request, const panel::TransferRecord &record) {
  const std::lock_guard lock(_mutex);
  ++_counters.transfers;
  return refuseLocked(reason, request, record);
}

int VirtualPanel::refuseLocked(const char *reason, unsigned long request, const panel::TransferRecord &record) {
  if (_counters.refused++ == 0)
    say_refused(reason, request, record);
  errno = EINVAL;
  return -1;
}

void VirtualPanel::setRecorder(TransferRecorder *recorder) {
  const std::lock_guard lock(_mutex);
  _recorder = recorder;
}

PanelState VirtualPanel::state() const {
  const std::lock_guard lock(_mutex);
  PanelState state;
  static_cast<PanelLamps &>(state) = _lamps;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    _controllers[screen].copyVisible(state.screens[screen]);
  return state;
}

PanelLamps VirtualPanel::lamps() const {
  const std::lock_guard lock(_mutex);
  return _lamps;
}

PanelChanges VirtualPanel::changesSince(const PanelRevision &seen) const {
  const std::lock_guard lock(_mutex);
  PanelChanges changes;
  changes.revision.lamps = _lamp_revision;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen) {
    changes.revision.screens[screen] = _controllers[screen].revision();
    changes.rows[screen] = _controllers[screen].rowsChangedSince(seen.screens[screen]);
  }
  return changes;
}

VirtualPanel::Counters VirtualPanel::counters() const {
  const std::lock_guard lock(_mutex);
  return _counters;
}

template <class Value> void VirtualPanel::setLamp(Value &lamp, Value value) {
  if (lamp == value)
    return;
  lamp = value;
  ++_lamp_revision;
}

void VirtualPanel::countChanges() {
  std::uint64_t sum = _lamp_revision;
  for (const TftController &controller : _controllers)
    sum += controller.revision();
  _revision.store(sum, std::memory_order_release);
}

void VirtualPanel::carryOut(const Transfer &transfer) {
  if (transfer.is_read) {
    read(transfer);
    return;
  }
  for (std::uint32_t i = 0; i < transfer.count; ++i)
    writeWord(transfer.address, transfer.words[i]);
}

void VirtualPanel::read(const Transfer &transfer) {
  const auto place = _registers.find(transfer.address);
  const std::uint16_t value = place == _registers.end() ? std::uint16_t{0} : place->second;
  std::fill_n(transfer.words, transfer.count, value);
}

void VirtualPanel::writeWord(std::uint32_t address, std::uint16_t word) {
  if (address >= fpga_register::tft_index_base && address <= tft_ports_end) {
    writeTft(address, word);
    return;
  }
  _registers[address] = word;
  const auto high_byte = static_cast<std::uint8_t>(word >> 8);
  switch (address) {
  case fpga_register::tft_intensity:
    // Other values of the enable bits belong to the power-on sequence and say nothing about the level.
    if ((high_byte & panel::intensity_enable) == panel::intensity_enable)
      setLamp(_lamps.intensity, high_byte & intensity_level_bits);
    break;
  case fpga_register::led_command:
    writeLedCommand(high_byte);
    break;
  case fpga_register::toggle_indicators:
    for (std::size_t i = 0; i < dimensions::toggle_indicator_count; ++i)
      setLamp(_lamps.toggles[i], (word >> i & 1) != 0);
    break;
  default:
    break;
  }
}

void VirtualPanel::writeLedCommand(std::uint8_t command) {
  const bool is_on = (command & led_command_bits::on) != 0;
  const unsigned kind = command & led_kind_bits;
  if (kind == led_command_bits::button_led)
    setLamp(_lamps.button_leds[command & led_id_bits], is_on);
  else if (kind == led_command_bits::status_indicator)
    setLamp(_lamps.status_leds[command & led_id_bits], is_on);
}

void VirtualPanel::writeTft(std::uint32_t address, std::uint16_t word) {
  const std::uint32_t port = address - fpga_register::tft_index_base;
  const bool is_index = port % 2 == 0;
  const unsigned mask = port / 2;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen) {
    if ((mask >> screen & 1) == 0)
      continue;
    if (is_index)
      _controllers[screen].writeIndex(static_cast<std::uint8_t>(word >> 8));
    else
      _controllers[screen].writeData(word);
  }
}

} // namespace buttondriver::simulator
