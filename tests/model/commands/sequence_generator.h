// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/commands/command.h"

#include <cstdint>
#include <iosfwd>
#include <string>

namespace buttondriver::test {

/// How often each kind of command comes, relative to the others.
struct Mixture {
  const char *name;
  unsigned text_lines;
  unsigned sub_text_lines;
  unsigned pictures;
  unsigned blackouts;
  unsigned button_leds;
  unsigned indicators;
  unsigned fonts;
  unsigned levels;
  unsigned ticks;
  unsigned others;
};

std::ostream &operator<<(std::ostream &stream, const Mixture &mixture);

/// A short sequence of commands, always the same for the same mixture and seed.
Sequence random_sequence(const Mixture &mixture, std::uint64_t seed);

} // namespace buttondriver::test
