// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/measure/drawing_yardsticks.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>

#include <stdexcept>

namespace buttondriver::yardsticks {

namespace {

constexpr int line_width = 128;
constexpr int line_height = 16;

QImage image_of_file(const std::string &bmp) {
  return QImage::fromData(reinterpret_cast<const uchar *>(bmp.data()), static_cast<int>(bmp.size()));
}

std::vector<std::uint16_t> pixels_of(const QImage &image) {
  std::vector<std::uint16_t> pixels;
  for (int row = 0; row < image.height(); ++row) {
    const auto *line = reinterpret_cast<const std::uint16_t *>(image.constScanLine(row));
    pixels.insert(pixels.end(), line, line + image.width());
  }
  return pixels;
}

/// What is measured must be done, also when nobody looks at its result.
void keep(const QImage &image) {
  if (image.isNull())
    throw std::runtime_error("QImage does not read a picture");
}

} // namespace

PainterLine::PainterLine(const std::string &font_file) : _image(line_width, line_height, QImage::Format_RGB16) {
  const int id = QFontDatabase::addApplicationFont(QString::fromStdString(font_file));
  _font = QFont(QFontDatabase::applicationFontFamilies(id).value(0));
  _font.setPixelSize(line_height);
  _font.setStyleStrategy(static_cast<QFont::StyleStrategy>(QFont::PreferBitmap | QFont::NoAntialias));
  _ascent = QFontMetrics(_font).ascent();
  if (id < 0 || QFontInfo(_font).pixelSize() != line_height)
    throw std::runtime_error("Qt does not take the font " + font_file);
}

void PainterLine::draw(const char *text) {
  QPainter painter(&_image);
  painter.fillRect(_image.rect(), Qt::black);
  painter.setFont(_font);
  painter.setPen(Qt::white);
  painter.drawText(0, _ascent, QString::fromLatin1(text));
}

std::vector<std::uint16_t> PainterLine::pixels() const { return pixels_of(_image); }

GlyphLine::GlyphLine(const std::string &font_file) {
  const bool is_taken = FT_Init_FreeType(&_library) == 0 && FT_New_Face(_library, font_file.c_str(), 0, &_face) == 0 &&
                        FT_Set_Pixel_Sizes(_face, 0, line_height) == 0;
  if (!is_taken)
    throw std::runtime_error("FreeType does not take the font " + font_file);
}

GlyphLine::~GlyphLine() {
  FT_Done_Face(_face);
  FT_Done_FreeType(_library);
}

void GlyphLine::render(const char *text) const {
  for (; *text; ++text)
    if (FT_Load_Char(_face, static_cast<unsigned char>(*text), FT_LOAD_RENDER) != 0)
      throw std::runtime_error("FreeType does not render a glyph");
}

void convert_file(const std::string &bmp) { keep(image_of_file(bmp).convertToFormat(QImage::Format_RGB16)); }

DecodedPicture::DecodedPicture(const std::string &bmp) : _image(image_of_file(bmp)) { keep(_image); }

void DecodedPicture::convert() const { keep(_image.convertToFormat(QImage::Format_RGB16)); }

std::vector<std::uint16_t> DecodedPicture::pixels() const {
  return pixels_of(_image.convertToFormat(QImage::Format_RGB16));
}

} // namespace buttondriver::yardsticks
