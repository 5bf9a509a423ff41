// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "server/limits.h"

#include <chrono>
#include <functional>
#include <utility>

namespace buttondriver {

/// The bytes that connections may hold for frames beyond the usual read-ahead, shared by all of them. What has arrived
/// counts, not what was announced.
///
/// So that frames which grow at the same time do not use all of it up and then all wait, room for one largest frame is
/// kept apart. It goes to one share at a time, the first one that finds the rest used up. That one must go on growing:
/// when it has not for `limits::large_frame_patience` while another share wants the room, it loses its frame.
class LargeFrameBudget {
public:
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  /// At least limits::largest_frame of `bytes` is for the kept room.
  explicit LargeFrameBudget(qint64 bytes = limits::large_frames, Clock clock = std::chrono::steady_clock::now)
      : _free(bytes - limits::largest_frame), _clock(std::move(clock)) {}
  LargeFrameBudget(const LargeFrameBudget &) = delete;
  LargeFrameBudget &operator=(const LargeFrameBudget &) = delete;

  /// What one connection holds.
  class Share {
  public:
    /// `budget` outlives this. `when_lost` is called when the share has been given to another one: it holds nothing
    /// then.
    Share(LargeFrameBudget *budget, std::function<void()> when_lost)
        : _budget(budget), _when_lost(std::move(when_lost)) {}
    ~Share() { release(); }
    Share(const Share &) = delete;
    Share &operator=(const Share &) = delete;

    /// Takes `bytes` more; false when they are not to be had now.
    bool grow(qint64 bytes);
    void release();
    /// Bytes taken so far.
    qint64 size() const { return _size; }

  private:
    friend class LargeFrameBudget;

    LargeFrameBudget *_budget;
    std::function<void()> _when_lost;
    qint64 _size = 0;
    qint64 _shared = 0; // of _size, what was taken from the rest
  };

  /// Bytes of the rest that nobody holds.
  qint64 free() const { return _free; }
  /// Whether nobody has the kept room.
  bool hasRoomForOne() const { return !_favoured; }

private:
  qint64 _free;
  Clock _clock;
  Share *_favoured = nullptr; // who has the kept room
  std::chrono::steady_clock::time_point _last_growth{};
};

} // namespace buttondriver
