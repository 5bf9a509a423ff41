// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/log_tap.h"

#include "logging/standard_output.h"

#include <QDateTime>
#include <QString>

#include <algorithm>

namespace buttondriver::simulator {

namespace {

// Neither channel hands a context to its observer.
LogTap *current_tap = nullptr;
QtMessageHandler previous_handler = nullptr;

void observe_message(QtMsgType type, const QMessageLogContext &context, const QString &message) {
  if (previous_handler)
    previous_handler(type, context, message);
  const bool is_event = type == QtDebugMsg || type == QtInfoMsg;
  current_tap->add(is_event ? LogEntry::Source::event : LogEntry::Source::fault, message.toUtf8());
}

void observe_print(std::string_view text) {
  const QString decoded = QString::fromLatin1(text.data(), static_cast<int>(text.size()));
  current_tap->add(LogEntry::Source::output, decoded.toUtf8());
}

} // namespace

LogTap::LogTap() : _previous(nullptr) {
  current_tap = this;
  _previous = previous_handler = qInstallMessageHandler(observe_message);
  observe_prints(observe_print);
}

LogTap::~LogTap() {
  observe_prints(nullptr);
  qInstallMessageHandler(_previous);
}

void LogTap::add(LogEntry::Source source, const QByteArray &text) {
  QByteArray line = text;
  while (line.endsWith('\n') || line.endsWith(' '))
    line.chop(1);
  line.truncate(most_bytes);
  const std::lock_guard lock(_mutex);
  _entries.add({QDateTime::currentMSecsSinceEpoch(), source, line});
}

LogTap::Part LogTap::since(std::uint64_t number, std::size_t most) const {
  const std::lock_guard lock(_mutex);
  Part part{_entries.last(), 0, {}};
  std::uint64_t first = std::max(number + 1, _entries.first());
  if (part.last + 1 > first + most)
    first = part.last + 1 - most;
  part.left_out = first - std::max(number, _entries.cleared()) - 1;
  for (; first <= part.last; ++first)
    part.entries.push_back(_entries.at(first));
  return part;
}

void LogTap::forget() {
  const std::lock_guard lock(_mutex);
  _entries.clear();
}

} // namespace buttondriver::simulator
