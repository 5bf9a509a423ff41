// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/commands/command.h"
#include "model/expected/bdf_font.h"
#include "model/expected/drawings.h"
#include "model/expected/lamp_model.h"
#include "model/expected/level_model.h"
#include "model/expected/screen_memory.h"
#include "model/shown_panel.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace buttondriver::test {

/// The fonts that there are, by the size that the configuration names; without a font where the file is none.
using FontCollection = std::map<std::pair<int, int>, std::optional<BdfFont>>;

/// What the daemon and its panel have to do, written down a second time: plain arithmetic on the messages, without
/// anything of the daemon itself.
class PanelModel {
public:
  /// `fonts` outlives the model. The first font is that of `width` x `height`.
  PanelModel(const FontCollection &fonts, int width, int height);

  void apply(const Command &command);
  ShownPanel shown() const;

private:
  void applyMessage(const std::string &message);
  void chooseFont(int width, int height);
  void draw(std::int32_t screen_id, const std::optional<Drawing> &drawing);

  const FontCollection &_fonts;
  std::pair<int, int> _font_size{0, 0};
  const BdfFont *_font = nullptr;
  std::array<ScreenMemory, 3> _screens;
  LampModel _lamps;
  LevelModel _levels;
  std::optional<std::string> _level_file;
  std::string _answers;
};

} // namespace buttondriver::test
