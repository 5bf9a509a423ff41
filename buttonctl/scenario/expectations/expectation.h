// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/panel/panel_feed.h"
#include "buttonctl/panel/panel_report.h"
#include "outcome/outcome.h"
#include "pictures/picture.h"

#include <QRect>
#include <QString>

#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace buttondriver::buttonctl {

/// Done when the panel is as expected; else what it is, for the user: "LED 5 is off, not on".
using StateTest = std::function<Outcome<Done>(const PanelReport &)>;

/// Likewise, of the pixels of a screen.
struct PixelTest {
  int screen;
  std::function<Outcome<Done>(const Picture &)> test;
};

/// Likewise, of the messages, or of the log's lines, that have come since the panel's start or the last reset.
struct FeedTest {
  PanelFeed::Kind kind;
  std::function<Outcome<Done>(const PanelFeed &)> test;
};

/// One question to the panel.
using Question = std::variant<StateTest, PixelTest, FeedTest>;

/// A part of a screen, or all of it, that should be as in a file.
struct PictureTest {
  int screen;
  QString file;     ///< the expected picture, a path that can be opened
  Picture expected; ///< null when there is none
  std::optional<QRect> region;
  int tolerance; ///< by how much each component may differ
};

/// One line of a scenario that says how the panel should be.
struct Expectation {
  QString command;               ///< "expect-led"
  std::optional<int> timeout_ms; ///< of its own
  /// All questions must have their answer at the same time.
  std::variant<std::vector<Question>, PictureTest> test;
  bool can_still_come = true; ///< whether waiting can make it true
};

} // namespace buttondriver::buttonctl
