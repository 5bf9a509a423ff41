// SPDX-License-Identifier: Apache-2.0
#include "bridge/wanted/restore_list.h"

#include "bridge/topics/topic_commands.h"

#include <algorithm>
#include <utility>

namespace buttondriver::bridge {

namespace {

bool is_drawn(const Target &target) {
  return target.kind == Target::Kind::line || target.kind == Target::Kind::area || target.kind == Target::Kind::screen;
}

void add_decoded(const WantedState::Entry &entry, const Decode &decode, QVector<TopicCommand> &commands) {
  if (Outcome<Command> command = decode(tail_of(entry.topic), entry.payload))
    commands.append({entry.topic, *std::move(command)});
}

/// What clears the places of which something else than the first of `commands` would be seen.
QVector<TopicCommand> with_clearing(const TargetSet &places, const QVector<TopicCommand> &commands) {
  QVector<TopicCommand> all;
  for (const Target &place : places.targets()) {
    const auto first = std::find_if(commands.begin(), commands.end(), [&](const TopicCommand &command) {
      return command.command.target.overlaps(place);
    });
    if (first == commands.end() || !first->command.target.covers(place))
      all.append({QByteArray(), Command{clearing_frame(place), place, false}});
  }
  return all + commands;
}

} // namespace

QVector<TopicCommand> restore_list(WantedState &state, const Decode &decode) {
  TargetSet places = state.takeToClear();
  QVector<TopicCommand> commands;
  for (const WantedState::Entry *const entry : state.visibleEntries()) {
    if (is_drawn(entry->target))
      places.add(entry->target);
    add_decoded(*entry, decode, commands);
  }
  return with_clearing(places, commands);
}

QVector<TopicCommand> redraw_list(WantedState &state, const Decode &decode) {
  const TargetSet places = state.takeToRedraw();
  // What is drawn again hides what was drawn over it, so that has to be drawn again as well.
  QVector<Target> drawn = places.targets();
  QVector<TopicCommand> commands;
  for (const WantedState::Entry *const entry : state.visibleEntries()) {
    const auto overlaps_entry = [&](const Target &target) { return target.overlaps(entry->target); };
    if (std::none_of(drawn.begin(), drawn.end(), overlaps_entry))
      continue;
    drawn.append(entry->target);
    add_decoded(*entry, decode, commands);
  }
  return with_clearing(places, commands);
}

QByteArray tail_of(const QByteArray &topic) {
  static const QByteArray group_beginning = "group/";
  const int levels_before = topic.startsWith(group_beginning) ? 2 : 1;
  auto begin = decltype(topic.indexOf('/')){0};
  for (int level = 0; level < levels_before; ++level) {
    const auto slash = topic.indexOf('/', begin);
    if (slash < 0)
      return {};
    begin = slash + 1;
  }
  return topic.mid(begin);
}

} // namespace buttondriver::bridge
