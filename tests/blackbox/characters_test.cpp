// SPDX-License-Identifier: Apache-2.0
// Every printable character of every shipped font, from a message over TCP to the panel's pixels, against the glyph as
// FreeType gives it; and where texts outside the screen end up.

#include "panel/panel_lib.h"
#include "protocol/encoders.h"
#include "protocol/frames.h"
#include "simulator/simulation/simulation.h"
#include "support/captured_log.h"
#include "support/event_loop.h"
#include "support/test_root.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

#include <ft2build.h>
#include FT_FREETYPE_H

#include <optional>
#include <vector>

namespace buttondriver {
namespace {

using test::process_events_until;

struct FontSize {
  int width;
  int height;
};

std::ostream &operator<<(std::ostream &stream, const FontSize &size) {
  return stream << size.width << "x" << size.height;
}

constexpr std::uint32_t text_colour = 0xFFE040;
constexpr std::uint32_t back_colour = 0x103060;
constexpr std::uint16_t text_pixel = 0xFF08; // 11111 111000 -> 0xFF08: red 31, green 56, blue 8
constexpr std::uint16_t back_pixel = 0x118C; // red 2, green 12, blue 12

std::vector<unsigned char> printable_characters() {
  std::vector<unsigned char> characters;
  for (int code = 0x20; code <= 0xFF; ++code)
    if (code < 0x7F || code >= 0xA0)
      characters.push_back(static_cast<unsigned char>(code));
  return characters;
}

/// One character as FreeType draws it: a row of '#' and '.' for each pixel row.
class ReferenceFont {
public:
  explicit ReferenceFont(const std::string &file) {
    EXPECT_EQ(FT_Init_FreeType(&_library), 0);
    EXPECT_EQ(FT_New_Face(_library, file.c_str(), 0, &_face), 0) << file;
  }
  ~ReferenceFont() {
    FT_Done_Face(_face);
    FT_Done_FreeType(_library);
  }
  ReferenceFont(const ReferenceFont &) = delete;
  ReferenceFont &operator=(const ReferenceFont &) = delete;

  std::string glyph(unsigned char character) {
    EXPECT_EQ(FT_Select_Size(_face, 0), 0);
    EXPECT_EQ(FT_Load_Glyph(_face, FT_Get_Char_Index(_face, character), FT_LOAD_DEFAULT), 0);
    const FT_Bitmap &bitmap = _face->glyph->bitmap;
    EXPECT_EQ(bitmap.pixel_mode, FT_PIXEL_MODE_MONO);
    std::string rows;
    for (unsigned row = 0; row < bitmap.rows; ++row) {
      const unsigned char *bytes = bitmap.buffer + static_cast<std::ptrdiff_t>(row) * bitmap.pitch;
      for (unsigned column = 0; column < bitmap.width; ++column)
        rows += (bytes[column / 8] >> (7 - column % 8) & 1) != 0 ? '#' : '.';
      rows += '\n';
    }
    return rows;
  }

private:
  FT_Library _library = nullptr;
  FT_Face _face = nullptr;
};

class CharactersTest : public testing::TestWithParam<FontSize> {
protected:
  ~CharactersTest() override {
    simulation.reset();
    panel::panel_lib_done();
  }

  void start() {
    root.writeFontSize(GetParam().width, GetParam().height);
    simulator::SimulationSettings settings;
    settings.root = root.path();
    settings.daemon_arguments =
        QStringList{QStringLiteral("sim"), QStringLiteral("map"), QString(), QStringLiteral("0")};
    simulation.emplace(settings);
    ASSERT_TRUE(simulation->start());
    client.connectToHost(QHostAddress(QHostAddress::LocalHost), simulation->daemon()->server().port());
    ASSERT_TRUE(process_events_until([&] { return client.state() == QAbstractSocket::ConnectedState; }));
  }

  void send(const QByteArray &message) { client.write(framed(message)); }

  /// What the panel shows once everything sent so far has been carried out.
  simulator::PanelState shown() {
    send(hton_BMS_Ping());
    EXPECT_TRUE(process_events_until([&] { return client.bytesAvailable() >= 8; }));
    client.readAll();
    std::optional<simulator::PanelState> state;
    simulation->whenWorkIsDone([&](const simulator::PanelState &done) { state = done; });
    EXPECT_TRUE(process_events_until([&] { return state.has_value(); }));
    return *state;
  }

  std::string cell(const simulator::ScreenPixels &pixels, int line, int column) const {
    std::string rows;
    for (int y = 0; y < GetParam().height; ++y) {
      for (int x = 0; x < GetParam().width; ++x) {
        const auto index =
            static_cast<std::size_t>((line * GetParam().height + y) * 128 + column * GetParam().width + x);
        rows += pixels[index] == text_pixel ? '#' : pixels[index] == back_pixel ? '.' : '?';
      }
      rows += '\n';
    }
    return rows;
  }

  // The log of a few thousand messages is of no interest here.
  test::CapturedLog log;
  test::CapturedOutput output;
  test::TestRoot root;
  std::optional<simulator::Simulation> simulation;
  QTcpSocket client;
};

TEST_P(CharactersTest, each_pixel_is_the_glyphs) {
  start();
  const auto [width, height] = GetParam();
  ReferenceFont reference(root.paths().font_directory + "/" + std::to_string(width) + "x" + std::to_string(height) +
                          ".pcf.gz");
  const int columns = 128 / width;
  const auto cells = static_cast<std::size_t>(columns * (128 / height));
  const std::vector<unsigned char> characters = printable_characters();
  for (std::size_t first = 0; first < characters.size(); first += cells) {
    const std::size_t count = std::min(cells, characters.size() - first);
    for (std::size_t i = 0; i < count; ++i) {
      const auto place = static_cast<int>(i);
      send(hton_BMS_TFTSubTextLine(1, place / columns, place % columns, 1,
                                   QString(QChar(ushort{characters[first + i]})), text_colour, back_colour));
    }
    const simulator::PanelState state = shown();
    for (std::size_t i = 0; i < count; ++i) {
      const auto place = static_cast<int>(i);
      EXPECT_EQ(cell(state.screens[1], place / columns, place % columns), reference.glyph(characters[first + i]))
          << "character " << int{characters[first + i]};
    }
  }
}

TEST_P(CharactersTest, a_whole_line_is_its_glyphs_side_by_side) {
  start();
  const auto [width, height] = GetParam();
  ReferenceFont reference(root.paths().font_directory + "/" + std::to_string(width) + "x" + std::to_string(height) +
                          ".pcf.gz");
  send(hton_BMS_TFTTextLine(0, 1, QStringLiteral("Line of text, longer than any screen is wide"), 1));
  const simulator::PanelState state = shown();
  const std::string text = "Line of text, longer than any screen is wide";
  const auto row_start = static_cast<std::size_t>(height) * 128;
  for (int column = 0; column < 128 / width; ++column) {
    std::string rows;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x)
        rows +=
            state.screens[0][row_start + static_cast<std::size_t>(y * 128 + column * width + x)] == 0xFFFF ? '#' : '.';
      rows += '\n';
    }
    EXPECT_EQ(rows, reference.glyph(static_cast<unsigned char>(text[static_cast<std::size_t>(column)]))) << column;
  }
  // What does not fit is dropped, and nothing else on the screen is touched.
  for (std::size_t i = 0; i < state.screens[0].size(); ++i) {
    const std::size_t y = i / 128;
    const bool in_line = y >= static_cast<std::size_t>(height) && y < static_cast<std::size_t>(2 * height);
    const bool in_cells = i % 128 < static_cast<std::size_t>(128 / width * width);
    if (!in_line || !in_cells) {
      ASSERT_EQ(state.screens[0][i], 0) << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(ShippedFonts, CharactersTest,
                         testing::Values(FontSize{4, 6}, FontSize{5, 7}, FontSize{5, 8}, FontSize{6, 9},
                                         FontSize{6, 10}, FontSize{6, 12}, FontSize{6, 13}, FontSize{7, 13},
                                         FontSize{7, 14}, FontSize{8, 13}, FontSize{8, 16}, FontSize{9, 15},
                                         FontSize{9, 18}, FontSize{10, 20}, FontSize{12, 24}),
                         testing::PrintToStringParamName());

/// With 16 pixel rows to a line, and 8 columns to a character.
class OutsideTest : public CharactersTest {};

TEST_P(OutsideTest, lines_beyond_the_last_one_are_not_seen_or_stand_over_others) {
  start();
  const simulator::PanelState empty = shown();
  for (int line = 8; line < 16; ++line)
    send(hton_BMS_TFTTextLine(0, line, QStringLiteral("unseen"), 1));
  EXPECT_EQ(shown().screens[0], empty.screens[0]);
  for (int line = 0; line < 8; ++line) {
    send(hton_BMS_TFTTextLine(0, line, QStringLiteral("line %1").arg(line), 1));
    send(hton_BMS_TFTTextLine(1, 16 + line, QStringLiteral("line %1").arg(line), 1));
  }
  const simulator::PanelState state = shown();
  EXPECT_NE(state.screens[0], empty.screens[0]);
  EXPECT_EQ(state.screens[0], state.screens[1]);
}

TEST_P(OutsideTest, lines_above_the_first_one_begin_in_its_first_row) {
  start();
  send(hton_BMS_TFTTextLine(0, 0, QStringLiteral("line"), 1));
  send(hton_BMS_TFTTextLine(1, -2, QStringLiteral("line"), 1));
  const simulator::PanelState state = shown();
  EXPECT_EQ(state.screens[0], state.screens[1]);
}

TEST_P(OutsideTest, characters_from_the_32nd_on_fill_whole_rows_from_the_first_column_on) {
  start();
  send(hton_BMS_TFTSubTextLine(0, 0, 32, 1, QStringLiteral("A"), text_colour, back_colour));
  send(hton_BMS_TFTSubTextLine(1, 0, 0, 1, QStringLiteral("A"), text_colour, back_colour));
  const simulator::PanelState state = shown();
  for (std::size_t i = 0; i < 128; ++i)
    ASSERT_EQ(state.screens[0][i], state.screens[1][i / 8 * 128 + i % 8]) << i;
}

INSTANTIATE_TEST_SUITE_P(ShippedFonts, OutsideTest, testing::Values(FontSize{8, 16}),
                         testing::PrintToStringParamName());

} // namespace
} // namespace buttondriver
