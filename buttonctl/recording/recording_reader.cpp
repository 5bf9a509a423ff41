// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/recording_reader.h"

#include "buttonctl/arguments/line_place.h"
#include "bytes/view_of.h"
#include "protocol/framing.h"

#include <QFile>
#include <QList>

#include <limits>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

constexpr int items_of_a_frame = 3;
/// Some 31 years, so that no deadline overflows, however slow the replay.
constexpr std::int64_t highest_time_us = 1000000000000000;
constexpr int most_shown_characters = 40;

/// For messages: enough of an item to recognise it.
QString shown(const QByteArray &item) {
  const QString text = QString::fromUtf8(item.left(most_shown_characters));
  return item.size() > most_shown_characters ? text + QLatin1String("...") : text;
}

/// A whole number without a sign; -1 when it is none, or too large.
std::int64_t whole_number(const QByteArray &item, std::int64_t highest) {
  for (const char character : item)
    if (character < '0' || character > '9')
      return -1;
  bool good = false;
  const qlonglong number = item.toLongLong(&good);
  return good && number <= highest ? number : -1;
}

bool is_hexadecimal(const QByteArray &item) {
  for (const char character : item)
    if (!(character >= '0' && character <= '9') && !(character >= 'a' && character <= 'f') &&
        !(character >= 'A' && character <= 'F'))
      return false;
  return true;
}

Outcome<QByteArray> parse_bytes(const QByteArray &item) {
  if (!is_hexadecimal(item))
    return Failure{QStringLiteral("FRAME must be hexadecimal digits, not '%1'").arg(shown(item))};
  if (item.size() % 2 != 0)
    return Failure{
        QStringLiteral("FRAME must be two digits for each byte, but has an odd number (%1)").arg(item.size())};
  const QByteArray bytes = QByteArray::fromHex(item);
  const ByteView view = view_of(bytes);
  if (bytes.size() < static_cast<int>(frame_prefix_size))
    return Failure{QStringLiteral("FRAME must begin with its length, 4 bytes, but has %1 bytes").arg(bytes.size())};
  const std::uint32_t announced = view.bigEndian32(0);
  const auto there = bytes.size() - static_cast<int>(frame_prefix_size);
  if (std::int64_t{announced} != there)
    return Failure{QStringLiteral("FRAME says that %1 bytes follow its length, but %2 do").arg(announced).arg(there)};
  return bytes;
}

} // namespace

Outcome<Done> check_recording_title(const QByteArray &line) {
  const QByteArray title(recording_title);
  if (!line.startsWith(title))
    return Failure{QStringLiteral("not a recording; the first line must be '%1%2'")
                       .arg(QLatin1String(recording_title))
                       .arg(recording_version)};
  const QByteArray version = line.mid(title.size()).trimmed();
  if (version != QByteArray::number(recording_version))
    return Failure{QStringLiteral("a recording of version '%1'; this program reads version %2")
                       .arg(shown(version))
                       .arg(recording_version)};
  return Done{};
}

Outcome<RecordedFrame> parse_recorded_frame(const QByteArray &line) {
  const QList<QByteArray> items = line.simplified().split(' ');
  if (items.size() != items_of_a_frame)
    return Failure{QStringLiteral("a frame is MICROSECONDS CONNECTION FRAME, %1 items and not %2")
                       .arg(items_of_a_frame)
                       .arg(items.size())};
  const std::int64_t time = whole_number(items[0], highest_time_us);
  if (time < 0)
    return Failure{QStringLiteral("MICROSECONDS must be a number from 0 to %1, not '%2'")
                       .arg(QString::number(highest_time_us), shown(items[0]))};
  const std::int64_t connection = whole_number(items[1], std::numeric_limits<std::int32_t>::max());
  if (connection < 1)
    return Failure{QStringLiteral("CONNECTION must be a number from 1 to 2147483647, not '%1'").arg(shown(items[1]))};
  const Outcome<QByteArray> bytes = parse_bytes(items[2]);
  if (!bytes)
    return bytes.failure();
  return RecordedFrame{time, static_cast<std::int32_t>(connection), *bytes};
}

bool is_recording_remark(const QByteArray &line) { return line.trimmed().isEmpty() || line.startsWith('#'); }

Outcome<Recording> parse_recording(const QString &file, const QByteArray &content) {
  Recording recording;
  std::int64_t last_time = 0;
  int number = 0;
  const QList<QByteArray> lines = content.split('\n');
  for (const QByteArray &line : lines) {
    ++number;
    const QString place = line_place(file, number);
    if (number == 1) {
      if (const auto title = check_recording_title(line); !title)
        return Failure{place + title.failure().text};
      continue;
    }
    if (is_recording_remark(line))
      continue;
    const Outcome<RecordedFrame> frame = parse_recorded_frame(line);
    if (!frame) {
      if (number == lines.size()) {
        recording.remark = place + QStringLiteral("the last line is cut off and left out: ") + frame.failure().text;
        break;
      }
      return Failure{place + frame.failure().text};
    }
    if (frame->time_us < last_time)
      return Failure{place +
                     QStringLiteral("the time goes backwards, from %1 to %2").arg(last_time).arg(frame->time_us)};
    last_time = frame->time_us;
    recording.frames.push_back(*frame);
    recording.lines.push_back(number);
  }
  return recording;
}

Outcome<Recording> read_recording(const QString &file) {
  QFile source(file);
  if (!source.open(QIODevice::ReadOnly))
    return Failure{QStringLiteral("cannot read '%1': %2").arg(file, source.errorString())};
  return parse_recording(file, source.readAll());
}

} // namespace buttondriver::buttonctl
