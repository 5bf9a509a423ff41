// SPDX-License-Identifier: Apache-2.0
#include "panel/formats/font.h"
#include "panel/panel_lib.h"
#include "panel/registers/register_device.h"
#include "panel/tft/image.h"
#include "panel/tft/text.h"
#include "soak/load/frames.h"
#include "yardsticks/measure/drawing_yardsticks.h"
#include "yardsticks/measure/groups.h"
#include "yardsticks/running/served.h"
#include "yardsticks/running/waiting.h"

namespace buttondriver::yardsticks {

namespace {

using Kind = Goal::Kind;

constexpr const char *text = "0123456789abcdef";
constexpr const char *font = BUTTONDRIVER_YARDSTICK_FONTS "/8x16.pcf.gz";
constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t black = 0;

/// Takes every transfer at once. It can keep the pixels of one, to look at what is measured.
class NoDevice : public panel::RegisterDevice {
public:
  NoDevice() { panel::use_register_device(this); }
  ~NoDevice() override { panel::use_register_device(nullptr); }
  int open(const char *) override { return 0; }
  int transfer(int, unsigned long, panel::TransferRecord &record, std::uint16_t *words) override {
    if (is_kept && record.count > 1)
      pixels.assign(words, words + record.count);
    return 0;
  }

  bool is_kept = false;
  std::vector<std::uint16_t> pixels;
};

/// The panel library with its font, as the daemon has it.
class PanelLibrary {
public:
  PanelLibrary() {
    panel::panel_lib_init();
    if (panel::font_load(font) != 0)
      throw std::runtime_error(std::string("there is no font ") + font);
  }
  ~PanelLibrary() { panel::panel_lib_done(); }
  PanelLibrary(const PanelLibrary &) = delete;
  PanelLibrary &operator=(const PanelLibrary &) = delete;
};

/// The bytes of a picture that fills a screen, with colours of all kinds.
std::string colourful_picture() {
  constexpr std::size_t side = 128;
  std::string bmp = soak::picture_head(side);
  for (std::size_t i = 0; i < side * side * 3; ++i)
    bmp += static_cast<char>(i * 7 + i / 311);
  return bmp;
}

template <class Work> double seconds_of_each(int count, Work work) {
  return seconds_of([&] {
           for (int i = 0; i < count; ++i)
             work();
         }) /
         count;
}

template <class Ours, class Theirs> void compare(int runs, int count, Comparison &row, Ours ours, Theirs theirs) {
  alternate(
      runs, [&] { row.ours.push_back(seconds_of_each(count, ours)); },
      [&] { row.theirs.push_back(seconds_of_each(count, theirs)); });
}

} // namespace

Group measure_drawing(const Setting &setting) {
  NoDevice device;
  const PanelLibrary library;
  const std::string bmp = colourful_picture();
  PainterLine painter(font);
  const GlyphLine glyphs(font);
  const auto our_text = [] { panel::tft_text_line(0, 0, text, white, black); };
  const auto our_picture = [&] { panel::tft_draw_image(0, 0, 0, ByteView(bmp.data(), bmp.size())); };
  const DecodedPicture decoded(bmp);

  device.is_kept = true;
  our_text();
  painter.draw(text);
  if (device.pixels != painter.pixels())
    throw std::runtime_error("QPainter draws another text line");
  our_picture();
  if (device.pixels != decoded.pixels())
    throw std::runtime_error("QImage reads another picture");
  device.is_kept = false;

  const Scale &scale = setting.scale;
  Comparison line{"text_line", "a text line of 16 characters", "QPainter", Unit::seconds, {Kind::times_as_fast, 10}, {},
                  {}};
  Comparison freetype{"text_line_freetype", line.title, "FreeType alone", Unit::seconds, {}, {}, {}};
  Comparison picture{"picture",
                     "a picture of 128 x 128 pixels",
                     "QImage, from file to pixels",
                     Unit::seconds,
                     {Kind::times_as_fast, 3},
                     {},
                     {}};
  Comparison conversion{"picture_conversion", picture.title, "QImage, pixels to pixels", Unit::seconds, {}, {}, {}};
  compare(scale.runs, scale.drawings, line, our_text, [&] { painter.draw(text); });
  compare(scale.runs, scale.drawings, freetype, our_text, [&] { glyphs.render(text); });
  const int pictures = std::max(1, scale.drawings / 10);
  compare(scale.runs, pictures, picture, our_picture, [&] { convert_file(bmp); });
  compare(scale.runs, pictures, conversion, our_picture, [&] { decoded.convert(); });
  return {
      "drawing",
      "Drawing",
      "The panel library draws for a device that does nothing; what it sends is all there, registers included. "
      "QPainter draws the same characters with the same bitmap font into an image of 128 x 16 pixels in 5-6-5, with "
      "their background. FreeType alone loads and renders the 16 glyphs and draws nothing. QImage reads the same BMP "
      "file from memory and converts it to 5-6-5; that is the whole work, and the goal is for it. The last row has "
      "the conversion only, of a picture that was read before. It was looked at that all have the same pixels.",
      {line, freetype, picture, conversion}};
}

} // namespace buttondriver::yardsticks
