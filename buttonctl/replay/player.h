// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/recording/recording_reader.h"
#include "outcome/outcome.h"

#include <cstdint>
#include <functional>

namespace buttondriver::buttonctl {

/// A clock that never goes backwards, in microseconds from some moment on.
class ReplayClock {
public:
  virtual ~ReplayClock() = default;
  virtual std::int64_t nowUs() = 0;
  /// Returns when it is `deadline_us`, at once when that is past; earlier when `give_up` returns true.
  virtual void waitUntil(std::int64_t deadline_us, const std::function<bool()> &give_up) = 0;
};

/// Where the frames of a recording go.
class FrameSink {
public:
  virtual ~FrameSink() = default;
  /// `is_last`: no more frames of this connection will come.
  virtual Outcome<Done> send(const RecordedFrame &frame, bool is_last) = 0;
  /// Sending is of no use any more; the next `send` returns the reason.
  virtual bool hasFailed() const = 0;
};

/// Sends the frames of `recording`, the first at once and each other one when (its time - the first one's) / `speed`
/// has passed since then. Every deadline is counted from the start, so that one that is late makes no other one late.
/// The failure of a frame has the place of its line in `file` in front.
Outcome<Done> play(const QString &file, const Recording &recording, double speed, ReplayClock &clock, FrameSink &sink);

} // namespace buttondriver::buttonctl
