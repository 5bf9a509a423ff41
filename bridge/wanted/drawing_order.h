// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/wanted/wanted_entry.h"

#include <array>
#include <cstddef>
#include <vector>

namespace buttondriver::bridge {

/// Knows of each entry how many later ones it overlaps, so that no usual publication has to look for that. An entry
/// that is published again and is overlapped by none may stay where it is.
///
/// Entries are compared only within a part of the panel: the buttons, the status LEDs, the toggle indicators, each
/// screen. Targets in different parts never overlap. Adding and taking out costs one comparison for each entry of the
/// part. One thread.
class DrawingOrder {
public:
  /// Both return whether the record of the order changes with it. `entry` is the last one, and stays where it is in the
  /// memory until it is taken out.
  bool append(WantedEntry &entry);
  bool takeOut(WantedEntry &entry);
  void clear();

private:
  using Part = std::vector<WantedEntry *>;
  template <typename Visit> void forPartsOf(const Target &target, Visit visit);

  std::array<Part, 6> _parts;
};

} // namespace buttondriver::bridge
