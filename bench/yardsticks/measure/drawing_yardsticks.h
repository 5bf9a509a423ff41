// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ft2build.h>
#include FT_FREETYPE_H

#include <QFont>
#include <QImage>
#include <QString>

#include <cstdint>
#include <string>
#include <vector>

/// What others draw that the panel library draws. Pixels are 5-6-5, top row first.
namespace buttondriver::yardsticks {

/// QPainter, on an image as large as a text line: white on black. Needs a QGuiApplication.
class PainterLine {
public:
  /// Throws std::runtime_error when Qt does not take the font, or not in its own size.
  explicit PainterLine(const std::string &font_file);
  void draw(const char *text);
  std::vector<std::uint16_t> pixels() const;

private:
  QFont _font;
  int _ascent = 0;
  QImage _image;
};

/// FreeType's part of drawing a text: glyphs as bitmaps.
class GlyphLine {
public:
  /// Throws std::runtime_error when FreeType does not take the font.
  explicit GlyphLine(const std::string &font_file);
  ~GlyphLine();
  GlyphLine(const GlyphLine &) = delete;
  GlyphLine &operator=(const GlyphLine &) = delete;
  void render(const char *text) const;

private:
  FT_Library _library = nullptr;
  FT_Face _face = nullptr;
};

/// The whole way of QImage, from the bytes of a file to pixels.
void convert_file(const std::string &bmp);

/// A picture that QImage has read, in the format that it chose.
class DecodedPicture {
public:
  explicit DecodedPicture(const std::string &bmp);
  void convert() const;
  std::vector<std::uint16_t> pixels() const;

private:
  QImage _image;
};

} // namespace buttondriver::yardsticks
