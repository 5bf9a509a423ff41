// SPDX-License-Identifier: Apache-2.0
#include "pictures/jpeg_outline.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace buttondriver {

namespace {

constexpr std::uint8_t marker_start = 0xFF;
constexpr std::uint8_t stuffing = 0x00;
constexpr std::uint8_t first_restart = 0xD0;
constexpr std::uint8_t last_restart = 0xD7;
constexpr std::uint8_t end_of_image = 0xD9;
constexpr std::uint8_t huffman_tables = 0xC4;
constexpr std::uint8_t exif = 0xE1;
/// A table has 256 places; the library means something else with the last one.
constexpr std::size_t most_codes = 255;
constexpr std::size_t lengths_of_codes = 16;

std::uint16_t big_endian_16(ByteView bytes, std::size_t offset) {
  return static_cast<std::uint16_t>(bytes.u8(offset) << 8 | bytes.u8(offset + 1));
}

/// Table after table: its class and number, how many codes there are of each length, and the codes' values.
bool are_sound(ByteView tables) {
  while (!tables.empty()) {
    std::size_t codes = 0;
    for (std::size_t i = 0; i < lengths_of_codes; ++i)
      codes += tables.u8(1 + i);
    const std::size_t size = 1 + lengths_of_codes + codes;
    if (codes > most_codes || size > tables.size())
      return false;
    tables = tables.from(size);
  }
  return true;
}

/// Numbers of a TIFF file, whose beginning says which byte comes first.
class TiffReader {
public:
  explicit TiffReader(ByteView file) : _file(file), _is_big_endian(file.u8(0) == 'M') {}

  std::uint16_t number16(std::uint64_t offset) const {
    return _is_big_endian ? static_cast<std::uint16_t>(_file.u8(offset) << 8 | _file.u8(offset + 1))
                          : _file.littleEndian16(offset);
  }
  std::uint32_t number32(std::uint64_t offset) const {
    return _is_big_endian ? _file.bigEndian32(offset) : _file.littleEndian32(offset);
  }

private:
  const ByteView _file;
  const bool _is_big_endian;
};

/// The orientation in an Exif segment, which is a TIFF file after six bytes; 1 when it says nothing about that.
int orientation_in(ByteView segment) {
  constexpr std::size_t tiff_start = 6;
  constexpr std::uint16_t orientation_tag = 0x0112;
  constexpr std::uint64_t entry_size = 12;
  if (segment.text(0, tiff_start) != "Exif" || segment.size() < tiff_start)
    return 1;
  const TiffReader tiff(segment.from(tiff_start));
  const std::uint64_t directory = tiff.number32(4);
  const int count = tiff.number16(directory);
  for (int i = 0; i < count; ++i) {
    const std::uint64_t entry = directory + 2 + static_cast<std::uint64_t>(i) * entry_size;
    if (tiff.number16(entry) != orientation_tag)
      continue;
    const int orientation = tiff.number16(entry + 8);
    return orientation >= 1 && orientation <= 8 ? orientation : 1;
  }
  return 1;
}

} // namespace

JpegOutline outline_of_jpeg(ByteView file) {
  JpegOutline outline;
  std::size_t place = 2;
  while (place < file.size()) {
    // What is no marker is data of the picture, or is passed over by the library as well.
    const std::uint8_t marker = file.u8(place + 1);
    if (file.u8(place) != marker_start || marker == marker_start) {
      ++place;
      continue;
    }
    place += 2;
    if (marker == stuffing || (marker >= first_restart && marker <= last_restart))
      continue;
    if (marker == end_of_image)
      break;
    const std::size_t length = big_endian_16(file, place);
    const ByteView rest = file.from(place + 2);
    const ByteView segment(rest.data(), length < 2 ? 0 : std::min(length - 2, rest.size()));
    if (marker == huffman_tables && !are_sound(segment))
      outline.has_sound_tables = false;
    if (marker == exif && outline.orientation == 1)
      outline.orientation = orientation_in(segment);
    place += length;
  }
  return outline;
}

} // namespace buttondriver
