// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/json/lettering_json.h"

#include "simulator/picture/lettering.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace buttondriver::simulator {

QByteArray lettering_json() {
  QJsonObject object;
  for (const Glyph &glyph : lettering_glyphs()) {
    const QLatin1String strokes(glyph.strokes.data(), static_cast<int>(glyph.strokes.size()));
    object[QString(QLatin1Char(glyph.character))] =
        QJsonObject{{QStringLiteral("width"), glyph.width}, {QStringLiteral("strokes"), strokes}};
  }
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace buttondriver::simulator
