// SPDX-License-Identifier: Apache-2.0
// Recordings, as `buttonctl replay` reads them: the whole input is the file.
#include "buttonctl/recording/recording_reader.h"
#include "buttonctl/recording/recording_writer.h"
#include "bytes/view_of.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/input.h"
#include "fuzz/support/memory_file.h"
#include "fuzz/support/require.h"
#include "protocol/framing.h"

#include <QByteArray>
#include <QString>

namespace buttondriver::fuzz {

namespace {

using buttonctl::RecordedFrame;
using buttonctl::Recording;

void require_one_line(const QString &text) {
  require(text.startsWith(QLatin1String("a.rec:")), "a message names the place");
  require(!text.contains(QLatin1Char('\n')), "a message is one line");
}

void require_order(const Recording &recording) {
  require(recording.frames.size() == recording.lines.size(), "each frame has its line");
  std::int64_t time = 0;
  int line = 1;
  for (std::size_t i = 0; i < recording.frames.size(); ++i) {
    const RecordedFrame &frame = recording.frames[i];
    require(frame.time_us >= time, "times never go backwards");
    require(recording.lines[i] > line, "frames are in the order of their lines");
    require(frame.connection >= 1, "connections count from 1");
    const ByteView bytes = view_of(frame.bytes);
    require(bytes.size() >= frame_prefix_size && bytes.bigEndian32(0) == bytes.size() - frame_prefix_size,
            "a frame is as long as it says");
    time = frame.time_us;
    line = recording.lines[i];
  }
}

bool are_same(const RecordedFrame &a, const RecordedFrame &b) {
  return a.time_us == b.time_us && a.connection == b.connection && a.bytes == b.bytes;
}

/// What was read can be written, and what was written reads as the same.
void require_round_trip(const std::vector<RecordedFrame> &frames) {
  const MemoryFile file({});
  const QString path = QString::fromStdString(file.path());
  buttonctl::RecordingWriter writer;
  require(bool(writer.open(path)), "a recording can be begun");
  for (const RecordedFrame &frame : frames)
    require(bool(writer.write(frame)), "a frame that was read can be written");
  const Outcome<Recording> again = buttonctl::read_recording(path);
  require(again && again->remark.isEmpty() && again->frames.size() == frames.size(), "what was written is read");
  for (std::size_t i = 0; i < frames.size(); ++i)
    require(are_same(again->frames[i], frames[i]), "what was written is read as it was");
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace buttondriver::fuzz;
  const std::vector<std::uint8_t> content = Input(data, size).rest();
  const auto recording = buttondriver::buttonctl::parse_recording(
      QStringLiteral("a.rec"),
      QByteArray(reinterpret_cast<const char *>(content.data()), static_cast<int>(content.size())));
  if (!recording) {
    require_one_line(recording.failure().text);
    return 0;
  }
  if (!recording->remark.isEmpty())
    require_one_line(recording->remark);
  require_order(*recording);
  require_round_trip(recording->frames);
  return 0;
}
