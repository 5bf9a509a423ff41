// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/commands/command.h"
#include "model/expected/panel_model.h"
#include "model/panel_under_test.h"

#include <string>

namespace buttondriver::test {

/// Plays sequences to the daemon and to the model, and compares what they show.
class Comparison {
public:
  static constexpr int first_font_width = 8;
  static constexpr int first_font_height = 16;

  /// The fonts' sources are in `font_sources`, what was made from them in `font_folder`. With `loses`, transfers get
  /// lost on their way to the panel.
  Comparison(const std::string &font_sources, const std::string &font_folder, LossyWire loses = {});

  /// What was different at the first look that showed a difference; empty when there was none. There is always a last
  /// look at the end. What the daemon prints and logs meanwhile is thrown away.
  std::string difference(const Sequence &sequence);

private:
  QTemporaryDir _font_folder;
  FontCollection _fonts;
  std::optional<PanelUnderTest> _panel;
};

} // namespace buttondriver::test
