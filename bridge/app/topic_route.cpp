// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/topic_route.h"

#include <array>
#include <string_view>

namespace buttondriver::bridge {

namespace {

std::string_view view_of(const QByteArray &bytes) {
  return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QByteArray borrowed(std::string_view text) {
  return QByteArray::fromRawData(text.data(), static_cast<int>(text.size()));
}

/// Takes the first level off `rest`.
std::string_view take_level(std::string_view &rest) {
  const std::size_t end = rest.find('/');
  const std::string_view level = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return level;
}

bool begins_with(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

/// What the bridge itself tells below a panel or a group.
bool is_told_by_the_bridge(std::string_view tail) {
  constexpr std::array<std::string_view, 2> whole = {"availability", "error"};
  for (const std::string_view one : whole)
    if (tail == one)
      return true;
  return begins_with(tail, "statistics/");
}

} // namespace

TopicRoute route_of(const QByteArray &prefix, const QByteArray &topic) {
  std::string_view rest = view_of(topic);
  if (!begins_with(rest, view_of(prefix)))
    return {};
  rest.remove_prefix(static_cast<std::size_t>(prefix.size()));
  if (rest.empty() || rest.front() != '/')
    return {};
  rest.remove_prefix(1);

  TopicRoute route;
  std::string_view name = take_level(rest);
  if (name == "bridge")
    return {};
  const bool is_group = name == "group";
  if (is_group)
    name = take_level(rest);
  if (name.empty() || rest.empty() || is_told_by_the_bridge(rest))
    return {};
  route.name = borrowed(name);
  if (!is_group && rest == "order") {
    route.kind = TopicRoute::Kind::order;
    return route;
  }
  route.kind = is_group ? TopicRoute::Kind::group : TopicRoute::Kind::panel;
  if (begins_with(rest, "do/")) {
    route.is_kept = false;
    rest.remove_prefix(3);
  }
  route.tail = borrowed(rest);
  return route;
}

} // namespace buttondriver::bridge
