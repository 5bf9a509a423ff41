// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace buttondriver {

/// What a task does, as far as its cost is concerned.
enum class TaskKind : std::uint8_t {
  text_line,
  sub_text_line,
  button_led,
  status_indicator,
  toggle_indicator,
  blackout,
  image,
  intensity,
  other, ///< no client asks for it
};

/// What tasks cost of the worker's time, as far as it has been seen: one figure for each kind and size class. A task
/// that costs more than expected counts at once, a quarter of the difference; one that costs less counts a sixteenth.
/// So one fast task among slow ones makes nobody believe in a fast device.
///
/// What was never seen is guessed from the time of a transfer, which every task teaches.
///
/// One thread teaches; any thread may ask.
class TaskCosts {
public:
  using Time = std::chrono::nanoseconds;

  /// Of a transfer, as long as none was seen. Few tasks are queued until the first one is done.
  static constexpr Time unknown_transfer = std::chrono::microseconds(500);
  /// Transfers of a text line or a picture; a window takes most of them.
  static constexpr int usual_transfers = 20;
  /// No task counts for less, however fast the device is.
  static constexpr Time least = std::chrono::microseconds(1);
  static constexpr Time most = std::chrono::seconds(4);

  /// `bytes` is what the task keeps alive: its text or its picture.
  Time of(TaskKind kind, std::size_t bytes) const;
  /// A task of this kind and size has taken so long, and as many transfers, at least one.
  void learn(TaskKind kind, std::size_t bytes, Time taken, std::uint32_t transfers = 1);

private:
  static constexpr std::size_t kinds = static_cast<std::size_t>(TaskKind::other) + 1;
  /// Up to 63 bytes, up to 127, and so on; the last one takes all that is larger.
  static constexpr std::size_t size_classes = 16;

  /// Nanoseconds; 0 while nothing is known.
  using Figure = std::atomic<std::uint32_t>;
  static std::size_t indexOf(TaskKind kind, std::size_t bytes);
  static void teach(Figure &figure, Time taken);
  Time guess(TaskKind kind) const;

  std::array<Figure, kinds * size_classes> _figures{};
  Figure _transfer{}; // of any kind
};

} // namespace buttondriver
