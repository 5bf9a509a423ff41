// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/replay/player.h"

#include "buttonctl/arguments/line_place.h"

#include <cmath>
#include <map>

namespace buttondriver::buttonctl {

Outcome<Done> play(const QString &file, const Recording &recording, double speed, ReplayClock &clock, FrameSink &sink) {
  if (recording.frames.empty())
    return Done{};
  std::map<std::int32_t, std::size_t> last_frames;
  for (std::size_t i = 0; i < recording.frames.size(); ++i)
    last_frames[recording.frames[i].connection] = i;

  const std::int64_t start_us = clock.nowUs();
  const std::int64_t first_us = recording.frames.front().time_us;
  for (std::size_t i = 0; i < recording.frames.size(); ++i) {
    const RecordedFrame &frame = recording.frames[i];
    const auto offset_us =
        static_cast<std::int64_t>(std::llround(static_cast<double>(frame.time_us - first_us) / speed));
    clock.waitUntil(start_us + offset_us, [&sink] { return sink.hasFailed(); });
    const Outcome<Done> sent = sink.send(frame, last_frames[frame.connection] == i);
    if (!sent)
      return Failure{line_place(file, recording.lines[i]) + sent.failure().text};
  }
  return Done{};
}

} // namespace buttondriver::buttonctl
