// SPDX-License-Identifier: Apache-2.0
#include "character_display/vacuum_writer.h"

#include "character_display/character_display_register.h"

#include <QByteArray>

#include <chrono>
#include <thread>
#include <utility>

namespace buttondriver {

using namespace character_display;

void store_in_memory(volatile std::uint32_t *address, std::uint32_t word) { *address = word; }

VacuumWriter::VacuumWriter(void *register_base, RegisterStore store)
    : _data_register(
          reinterpret_cast<volatile std::uint32_t *>(static_cast<char *>(register_base) + data_register_offset)),
      _store(std::move(store)) {}

void VacuumWriter::text(int channel, QString text) {
  const Lane &lane = (channel & 0xFF) == 0 ? channel_0 : other_channel;
  const QByteArray characters = text.toLatin1();
  for (const char character : characters) {
    const std::uint32_t data = std::uint32_t{static_cast<std::uint8_t>(character)} << lane.data_shift;
    const std::uint32_t rest = data | strobes_at_rest;
    const std::uint32_t pulse = rest & ~lane.strobe;
    // The second low word only makes the pulse longer.
    for (const std::uint32_t word : {rest, pulse, pulse, rest})
      _store(_data_register, word);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void VacuumWriter::run() {}

} // namespace buttondriver
