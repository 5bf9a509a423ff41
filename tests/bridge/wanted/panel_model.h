// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/topics/topic_command.h"
#include "outcome/outcome.h"

#include <QByteArray>

#include <array>
#include <string>

namespace buttondriver::bridge::test {

/// A panel with screens of 8 lines with 16 characters, each 8 x 16 pixels. A frame of a command is a text: "column
/// width what" for a part, and "what" for all else. 0 is dark.
class PanelModel {
public:
  void carryOut(const Command &command);
  bool operator==(const PanelModel &other) const;
  bool operator!=(const PanelModel &other) const { return !(*this == other); }
  /// What is seen: lamps that are on, and the lines of the screens.
  std::string text() const;

private:
  void draw(int screen, const Command &command);

  std::array<int, 24> _buttons{};
  std::array<int, 32> _status{};
  std::array<int, 2> _toggles{};
  std::array<std::array<std::array<int, 16>, 8>, 3> _screens{};
};

/// A payload that carries its target with it, and the command of such a payload.
QByteArray payload_of(const Target &target, const QByteArray &frame);
Outcome<Command> decoded(const QByteArray &tail, const QByteArray &payload);

} // namespace buttondriver::bridge::test
