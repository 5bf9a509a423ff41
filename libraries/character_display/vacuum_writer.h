// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QThread>

#include <cstdint>
#include <functional>

namespace buttondriver {

/// Stores one 32-bit word in a register. Called on the writing thread.
using RegisterStore = std::function<void(volatile std::uint32_t *address, std::uint32_t word)>;

/// The plain store: one, of all 32 bits, in the order of the program.
void store_in_memory(volatile std::uint32_t *address, std::uint32_t word);

/// Writes texts to the character displays, one character in a millisecond. It works on the thread that it was made on:
/// as a QThread it is never started.
class VacuumWriter : public QThread {
  Q_OBJECT

public:
  /// `register_base` is where the register block begins, aligned for 32 bits and mapped for writing up to and with its
  /// data register (character_display_register.h), for as long as the writer lives; the caller owns it. `store` stands
  /// in for the plain store where the register is not real.
  explicit VacuumWriter(void *register_base, RegisterStore store = store_in_memory);

public Q_SLOTS:
  /// Writes the Latin-1 characters of `text` to one display, "?" for any other character: the first display when the
  /// low 8 bits of `channel` are 0, else the other one. Returns after the last character's millisecond.
  void text(int channel, QString text);

protected:
  /// Never called.
  void run() override;

private:
  volatile std::uint32_t *_data_register;
  RegisterStore _store;
};

} // namespace buttondriver
