// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/json/feeds_json.h"

#include <QJsonArray>

#include <algorithm>

namespace buttondriver::simulator {

namespace {

QString name_of(LogEntry::Source source) {
  switch (source) {
  case LogEntry::Source::event:
    return QStringLiteral("event");
  case LogEntry::Source::fault:
    return QStringLiteral("fault");
  case LogEntry::Source::output:
    break;
  }
  return QStringLiteral("output");
}

QJsonObject numbered(std::uint64_t number, QJsonObject entry) {
  entry[QLatin1String("number")] = static_cast<qint64>(number);
  return entry;
}

/// A feed of which `first` is the number of the first entry that it has, one more than `last` when it has none.
QJsonObject feed(std::uint64_t since, std::uint64_t first, std::uint64_t last) {
  const std::uint64_t dropped = first > since + 1 ? first - since - 1 : 0;
  return {{QStringLiteral("version"), feed_version},
          {QStringLiteral("last"), static_cast<qint64>(last)},
          {QStringLiteral("dropped"), static_cast<qint64>(dropped)}};
}

} // namespace

QJsonObject to_json(const LogEntry &entry) {
  return {{QStringLiteral("time"), entry.time_ms},
          {QStringLiteral("source"), name_of(entry.source)},
          {QStringLiteral("text"), QString::fromUtf8(entry.text)}};
}

QJsonObject messages_feed(const History<MessageRecord> *messages, std::uint64_t since) {
  if (!messages)
    return {{QStringLiteral("version"), feed_version},
            {QStringLiteral("last"), QJsonValue()},
            {QStringLiteral("dropped"), 0},
            {QStringLiteral("messages"), QJsonValue()}};
  const std::uint64_t first = std::max(since + 1, messages->first());
  QJsonArray entries;
  for (std::uint64_t number = first; number <= messages->last(); ++number)
    entries += numbered(number, to_json(messages->at(number)));
  QJsonObject object = feed(since, first, messages->last());
  object[QLatin1String("messages")] = entries;
  return object;
}

QJsonObject log_feed(const LogTap::Part &log, std::uint64_t since) {
  const std::uint64_t first = log.last + 1 - log.entries.size();
  QJsonArray entries;
  for (std::size_t i = 0; i < log.entries.size(); ++i)
    entries += numbered(first + i, to_json(log.entries[i]));
  QJsonObject object = feed(since, first, log.last);
  object[QLatin1String("log")] = entries;
  return object;
}

} // namespace buttondriver::simulator
