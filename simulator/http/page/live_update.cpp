// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/live_update.h"

#include "simulator/http/json/feeds_json.h"
#include "simulator/http/json/state_json.h"

#include <QJsonDocument>

#include <algorithm>
#include <tuple>

namespace buttondriver::simulator {

namespace {

constexpr char rows_of_a_screen = 1;

auto tied(const SimulationCounters &c) {
  return std::tie(c.messages, c.transfers, c.refused_transfers, c.queue_length, c.clients, c.drivers);
}

auto tied(const FeedPosition &p) {
  return std::tie(p.is_new, p.panel.lamps, p.panel.screens, p.texts, p.messages, p.log, p.blinking);
}

QByteArray encoded(std::size_t screen, const ScreenRows &rows) {
  const std::size_t row_count = rows.pixels.size() / dimensions::screen_width;
  QByteArray bytes;
  bytes.reserve(static_cast<int>(4 + rows.pixels.size() * 2));
  bytes += rows_of_a_screen;
  bytes += static_cast<char>(screen);
  bytes += static_cast<char>(rows.first_row);
  bytes += static_cast<char>(row_count);
  for (const std::uint16_t pixel : rows.pixels) {
    bytes += static_cast<char>(pixel & 0xFF);
    bytes += static_cast<char>(pixel >> 8);
  }
  return bytes;
}

void add_panel(QJsonObject &object, LiveUpdate &update, const VirtualPanel &panel, const FeedPosition &from) {
  const PanelChanges changes = panel.changesSince(from.panel);
  update.position.panel = changes.revision;
  for (std::size_t screen = 0; screen < dimensions::screen_count; ++screen)
    for (const ScreenRows &rows : changes.rows[screen])
      update.pixels.push_back(encoded(screen, rows));
  if (from.is_new || changes.revision.lamps != from.panel.lamps)
    object[QLatin1String("lamps")] = to_json(panel.lamps());
}

void add_texts(QJsonObject &object, LiveUpdate &update, const TextMemory &texts, const FeedPosition &from) {
  update.position.texts = texts.revision();
  if (from.is_new || texts.revision() != from.texts)
    object[QLatin1String("screens")] = to_json(texts.screens());
}

void add_messages(QJsonObject &object, LiveUpdate &update, const History<MessageRecord> &messages,
                  const FeedPosition &from) {
  update.position.messages = messages.last();
  if (messages.last() == from.messages && !from.is_new)
    return;
  std::uint64_t first = std::max(from.messages + 1, messages.first());
  if (!from.is_new && messages.last() + 1 - first > most_entries)
    first = messages.last() + 1 - most_entries;
  QJsonArray entries;
  for (std::uint64_t number = first; number <= messages.last(); ++number) {
    QJsonObject entry = to_json(messages.at(number));
    entry[QLatin1String("bytes")] = QString::fromLatin1(messages.at(number).bytes.toHex());
    entries += entry;
  }
  update.entry_count = std::max(update.entry_count, static_cast<std::size_t>(entries.size()));
  object[QLatin1String("messages")] = entries;
  object[QLatin1String("messages_left_out")] =
      static_cast<qint64>(from.is_new ? 0 : first - std::max(from.messages, messages.cleared()) - 1);
}

void add_blinking(QJsonObject &object, LiveUpdate &update, Daemon &daemon, const FeedPosition &from) {
  update.position.blinking = daemon.dispatcher().blinkTimes();
  if (from.is_new || update.position.blinking != from.blinking)
    object[QLatin1String("blinking")] = blinking_to_json(update.position.blinking);
}

void add_log(QJsonObject &object, LiveUpdate &update, const LogTap &log, const FeedPosition &from) {
  const LogTap::Part part = log.since(from.log, from.is_new ? LogTap::kept_entries : most_entries);
  update.position.log = part.last;
  if (part.last == from.log && !from.is_new)
    return;
  QJsonArray entries;
  for (const LogEntry &entry : part.entries)
    entries += to_json(entry);
  update.entry_count = std::max(update.entry_count, part.entries.size());
  object[QLatin1String("log")] = entries;
  object[QLatin1String("log_left_out")] = static_cast<qint64>(from.is_new ? 0 : part.left_out);
}

} // namespace

bool operator==(const FeedPosition &left, const FeedPosition &right) {
  return tied(left) == tied(right) && tied(left.counters) == tied(right.counters);
}

LiveUpdate gather_update(Simulation &simulation, const FeedPosition &from, Entries entries) {
  const bool takes_entries = entries == Entries::taken || from.is_new;
  LiveUpdate update;
  update.position = from;
  QJsonObject object;
  add_panel(object, update, simulation.panel(), from);
  if (simulation.messages()) {
    add_texts(object, update, simulation.messages()->texts(), from);
    if (takes_entries)
      add_messages(object, update, simulation.messages()->messages(), from);
  }
  if (simulation.daemon())
    add_blinking(object, update, *simulation.daemon(), from);
  if (simulation.log() && takes_entries)
    add_log(object, update, *simulation.log(), from);
  update.position.counters = simulation.counters();
  if (from.is_new || tied(update.position.counters) != tied(from.counters))
    object[QLatin1String("counters")] = to_json(update.position.counters);
  update.position.is_new = false;
  if (!object.isEmpty())
    update.text = QJsonDocument(object).toJson(QJsonDocument::Compact);
  return update;
}

} // namespace buttondriver::simulator
