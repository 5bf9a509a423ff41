// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/outside_driver.h"

#include "files/system_paths.h"
#include "panel/formats/font.h"
#include "simulator/notices/notices.h"
#include "simulator/simulation/panel_root.h"

#include <QFile>

namespace buttondriver::simulator {

namespace {

Outcome<QString> font_file(const QString &name) {
  const QSize size = read_font_size(name);
  if (!size.isValid())
    return name;
  const SystemPaths paths = SystemPaths::under(QFile::encodeName(ready_made_root()).toStdString());
  return find_font(QFile::decodeName(paths.font_directory.c_str()), size);
}

/// There is no daemon in this program, so the font in use is nobody's.
ScreenFont read_font(const QString &file) {
  panel::freetype_start();
  panel::font_load(QFile::encodeName(file).constData());
  ScreenFont font = ScreenFont::inUse();
  panel::freetype_end();
  return font;
}

} // namespace

Outcome<Done> OutsideDriver::start() {
  if (!_font_name.isEmpty()) {
    const auto file = font_file(_font_name);
    if (!file)
      return file.failure();
    _font = read_font(*file);
    if (!_font.fault().empty())
      return Failure{
          QStringLiteral("texts cannot be read with %1: %2").arg(*file, QString::fromStdString(_font.fault()))};
    tell_detail("buttondriver-sim: font %s\n", QFile::encodeName(*file).constData());
  }
  return _socket.listen(_socket_path);
}

} // namespace buttondriver::simulator
