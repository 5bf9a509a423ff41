// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/target.h"

#include <QVector>

#include <cstdint>

namespace buttondriver::bridge {

/// Places of a panel that can be cleared: lamps, and whole screens. Of a size that does not grow.
class TargetSet {
public:
  /// Every lamp and every screen of a panel.
  static TargetSet wholePanel();

  /// A line and an area count as their screen.
  void add(const Target &target);
  void add(const TargetSet &other);
  /// Each one a single lamp or screen, but for all buttons at once.
  QVector<Target> targets() const;

private:
  std::uint32_t _buttons = 0; // a bit for each place
  std::uint32_t _status = 0;
  std::uint32_t _toggles = 0;
  std::uint32_t _screens = 0;
  bool _has_all_buttons = false;
};

} // namespace buttondriver::bridge
