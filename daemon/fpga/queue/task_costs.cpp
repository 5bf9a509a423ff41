// SPDX-License-Identifier: Apache-2.0
#include "fpga/queue/task_costs.h"

#include <algorithm>

namespace buttondriver {

namespace {

constexpr std::int64_t share_of_more = 4;
constexpr std::int64_t share_of_less = 16;

TaskCosts::Time first_guess(TaskKind kind) {
  switch (kind) {
  case TaskKind::button_led:
  case TaskKind::status_indicator:
  case TaskKind::toggle_indicator:
  case TaskKind::intensity:
    return TaskCosts::unknown_transfer;
  default:
    return TaskCosts::unknown;
  }
}

} // namespace

std::size_t TaskCosts::indexOf(TaskKind kind, std::size_t bytes) {
  std::size_t size_class = 0;
  for (bytes >>= 6; bytes > 0 && size_class + 1 < size_classes; bytes >>= 1)
    ++size_class;
  return static_cast<std::size_t>(kind) * size_classes + size_class;
}

TaskCosts::Time TaskCosts::of(TaskKind kind, std::size_t bytes) const {
  const std::uint32_t figure = _figures[indexOf(kind, bytes)].load(std::memory_order_relaxed);
  return figure == 0 ? first_guess(kind) : std::max(Time(figure), least);
}

void TaskCosts::learn(TaskKind kind, std::size_t bytes, Time taken) {
  Figure &figure = _figures[indexOf(kind, bytes)];
  const std::int64_t seen = std::clamp(taken, Time(1), most).count();
  const std::int64_t known = figure.load(std::memory_order_relaxed);
  std::int64_t next = seen;
  if (known > 0)
    next = known + (seen - known) / (seen > known ? share_of_more : share_of_less);
  figure.store(static_cast<std::uint32_t>(next), std::memory_order_relaxed);
}

} // namespace buttondriver
