// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/panel/panel_feed.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace buttondriver::buttonctl {

namespace {

constexpr int known_feed_version = 1;

QLatin1String name_of(PanelFeed::Kind kind) {
  return QLatin1String(kind == PanelFeed::Kind::messages ? "messages" : "log");
}

} // namespace

QString path_of(PanelFeed::Kind kind) { return QStringLiteral("/%1.json").arg(name_of(kind)); }

Outcome<PanelFeed> parse_panel_feed(PanelFeed::Kind kind, const QByteArray &json) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(json, &error);
  if (!document.isObject())
    return Failure{QStringLiteral("it is no JSON object (%1)").arg(error.errorString())};
  const QJsonObject object = document.object();
  const int version = object.value(QLatin1String("version")).toInt();
  if (version != known_feed_version)
    return Failure{
        QStringLiteral("its version is %1; this program reads version %2").arg(version).arg(known_feed_version)};
  const QJsonValue entries = object.value(name_of(kind));
  PanelFeed feed;
  feed.is_known = !entries.isNull();
  if (!feed.is_known)
    return feed;
  if (!entries.isArray())
    return Failure{QStringLiteral("'%1' must be a list").arg(name_of(kind))};
  feed.last = static_cast<qint64>(object.value(QLatin1String("last")).toDouble());
  feed.dropped = static_cast<qint64>(object.value(QLatin1String("dropped")).toDouble());
  for (const QJsonValue entry : entries.toArray())
    feed.entries.push_back(entry.toObject());
  return feed;
}

} // namespace buttondriver::buttonctl
