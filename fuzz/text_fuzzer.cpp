// SPDX-License-Identifier: Apache-2.0
// Texts in any font.
//
// Input, from the end: the length of the text (two bytes), the screen (one byte, signed), line, offset and number of
// characters (four bytes each, signed), text and back colour (four bytes each). At the front: the text, and between the
// two: the font's file.
#include "fuzz/fuzz_target.h"
#include "fuzz/support/checked_panel.h"
#include "fuzz/support/input.h"
#include "fuzz/support/memory_file.h"
#include "fuzz/support/quiet.h"
#include "panel/formats/font.h"
#include "panel/panel_lib.h"
#include "panel/tft/text.h"

#include <string_view>

namespace buttondriver::fuzz {

namespace {

struct Rig {
  Rig() { drop_standard_output(); }

  CheckedPanel device;
};

void run(const Rig &rig, Input input) {
  const std::size_t text_size = input.number<std::uint16_t>();
  const auto screen = input.number<std::int8_t>();
  const auto line = input.number<std::int32_t>();
  const auto offset = input.number<std::int32_t>();
  const auto characters = input.number<std::int32_t>();
  const auto text_colour = input.number<std::uint32_t>();
  const auto back_colour = input.number<std::uint32_t>();
  const std::vector<std::uint8_t> text_bytes = input.bytes(text_size);
  const std::string_view text(reinterpret_cast<const char *>(text_bytes.data()), text_bytes.size());
  const MemoryFile font(input.rest());

  // A library of its own for each font, so that nothing of one input is there at the next.
  panel::panel_lib_init();
  panel::font_load(font.path().c_str());
  panel::tft_text_line(screen, line, text, text_colour, back_colour);
  panel::tft_text_line_default(screen, line, text);
  panel::tft_sub_text_line(screen, line, offset, text, characters, text_colour, back_colour);
  rig.device.require_whole_windows();
  panel::panel_lib_done();
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const buttondriver::fuzz::Rig rig;
  buttondriver::fuzz::run(rig, {data, size});
  return 0;
}
