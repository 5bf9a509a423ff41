// SPDX-License-Identifier: Apache-2.0
#include "pictures/bmp_file.h"

#include <QDataStream>
#include <QIODevice>

#include <algorithm>
#include <cstdint>

namespace buttondriver {

namespace {

constexpr std::uint32_t file_header_size = 14;
constexpr std::uint32_t information_header_size = 40;
constexpr std::uint32_t header_size = file_header_size + information_header_size;
/// The shortest information header that has a mask for opacity.
constexpr std::uint32_t size_with_opacity_mask = 56;
constexpr std::uint32_t uncompressed = 0;
constexpr std::uint32_t uncompressed_with_masks = 3;
constexpr std::int32_t pixels_per_metre = 2835;

struct Header {
  std::uint32_t data_offset;
  std::uint32_t information_size;
  std::int32_t width;
  std::int32_t height;
  std::uint16_t planes;
  std::uint16_t bits_per_pixel;
  std::uint32_t compression;
};

std::optional<Header> read_header(ByteView file) {
  if (file.size() < header_size || file.u8(0) != 'B' || file.u8(1) != 'M')
    return std::nullopt;
  return Header{file.littleEndian32(10),
                file.littleEndian32(14),
                static_cast<std::int32_t>(file.littleEndian32(18)),
                static_cast<std::int32_t>(file.littleEndian32(22)),
                file.littleEndian16(26),
                file.littleEndian16(28),
                file.littleEndian32(30)};
}

/// Rows start on multiples of four bytes.
std::uint64_t row_size(std::uint64_t width, std::uint64_t bits_per_pixel) {
  return (width * bits_per_pixel + 31) / 32 * 4;
}

bool holds_all_rows(const Header &header, ByteView file) {
  const auto width = static_cast<std::uint64_t>(std::max(header.width, 0));
  const auto signed_height = std::int64_t{header.height};
  const auto height = static_cast<std::uint64_t>(signed_height < 0 ? -signed_height : signed_height);
  const std::uint64_t row = row_size(width, header.bits_per_pixel);
  const std::uint64_t room = file.size() > header.data_offset ? file.size() - header.data_offset : 0;
  // Divided, because the product may not fit 64 bits.
  return row == 0 || height <= room / row;
}

} // namespace

std::optional<QSize> size_of_screen_bmp(ByteView file) {
  const std::optional<Header> header = read_header(file);
  if (!header || header->information_size != information_header_size || header->planes != 1 ||
      header->bits_per_pixel != 24 || header->compression != uncompressed || header->width <= 0 ||
      header->height <= 0 || header->data_offset < header_size || !holds_all_rows(*header, file))
    return std::nullopt;
  return QSize(header->width, header->height);
}

bool is_cut_short_bmp(ByteView file) {
  const std::optional<Header> header = read_header(file);
  return header && header->information_size >= information_header_size &&
         (header->compression == uncompressed || header->compression == uncompressed_with_masks) &&
         !holds_all_rows(*header, file);
}

bool is_bmp_without_opacity(ByteView file) {
  const std::optional<Header> header = read_header(file);
  return header &&
         (header->compression != uncompressed_with_masks || header->information_size < size_with_opacity_mask);
}

QByteArray write_screen_bmp(const Picture &picture) {
  const int width = picture.width();
  const int height = picture.height();
  const auto row = static_cast<quint32>(row_size(static_cast<std::uint64_t>(width), 24));
  const quint32 data_size = row * static_cast<quint32>(height);

  QByteArray file;
  file.reserve(static_cast<int>(header_size + data_size));
  QDataStream stream(&file, QIODevice::WriteOnly);
  stream.setByteOrder(QDataStream::LittleEndian);
  stream << quint8{'B'} << quint8{'M'} << quint32{header_size + data_size} << quint32{0} << quint32{header_size};
  stream << quint32{information_header_size} << qint32{width} << qint32{height} << quint16{1} << quint16{24};
  stream << quint32{uncompressed} << data_size << qint32{pixels_per_metre} << qint32{pixels_per_metre};
  stream << quint32{0} << quint32{0};

  const QByteArray padding(static_cast<int>(row) - 3 * width, '\0');
  for (int y = height - 1; y >= 0; --y) {
    for (int x = 0; x < width; ++x) {
      const Colour colour = picture.at(x, y);
      stream << colour.blue << colour.green << colour.red;
    }
    stream.writeRawData(padding.constData(), static_cast<int>(padding.size()));
  }
  return file;
}

} // namespace buttondriver
