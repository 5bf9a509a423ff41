// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// What follows the size in the name of a font's file.
inline const QString font_suffix = QStringLiteral(".pcf.gz");
/// Where Debian's package xfonts-base puts its fonts.
inline constexpr const char *package_font_folder = "/usr/share/fonts/X11/misc";

/// The sizes of the fonts in `folder` as in "10x20", by their files' names, the smallest first.
QStringList font_sizes_in(const QString &folder);

} // namespace buttondriver::buttonctl
