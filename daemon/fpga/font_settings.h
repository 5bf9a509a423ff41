// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <optional>

namespace buttondriver {

/// Size of the screens' characters in pixels, as the launcher configuration gives it; 0 where it does not.
struct FontSettings {
  int width = 0;
  int height = 0;

  bool operator==(const FontSettings &other) const { return width == other.width && height == other.height; }
};

/// Reads group "font", keys "width" and "height", of the INI file at `path`. A file that does not exist gives
/// zeros. No settings for one that is no regular file, is longer than 64 KiB, cannot be read, or is no INI file.
std::optional<FontSettings> read_font_settings(const QString &path);

} // namespace buttondriver
