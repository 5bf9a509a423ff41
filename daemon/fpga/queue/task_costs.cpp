// SPDX-License-Identifier: Apache-2.0
#include "fpga/queue/task_costs.h"

#include <algorithm>

namespace buttondriver {

namespace {

constexpr std::int64_t share_of_more = 4;
constexpr std::int64_t share_of_less = 16;

int usual_transfers_of(TaskKind kind) {
  switch (kind) {
  case TaskKind::button_led:
  case TaskKind::status_indicator:
  case TaskKind::toggle_indicator:
  case TaskKind::intensity:
  case TaskKind::other:
    return 1;
  default:
    return TaskCosts::usual_transfers;
  }
}

} // namespace

// What is inline here runs several times for each task.
inline std::size_t TaskCosts::indexOf(TaskKind kind, std::size_t bytes) {
  std::size_t size_class = 0;
  for (bytes >>= 6; bytes > 0 && size_class + 1 < size_classes; bytes >>= 1)
    ++size_class;
  return static_cast<std::size_t>(kind) * size_classes + size_class;
}

TaskCosts::Time TaskCosts::of(TaskKind kind, std::size_t bytes) const {
  const std::uint32_t figure = _figures[indexOf(kind, bytes)].load(std::memory_order_relaxed);
  return std::max(figure == 0 ? guess(kind) : Time(figure), least);
}

TaskCosts::Time TaskCosts::guess(TaskKind kind) const {
  const std::uint32_t transfer = _transfer.load(std::memory_order_relaxed);
  return usual_transfers_of(kind) * (transfer == 0 ? unknown_transfer : Time(transfer));
}

inline void TaskCosts::teach(Figure &figure, Time taken) {
  const std::int64_t seen = std::clamp(taken, Time(1), most).count();
  const std::int64_t known = figure.load(std::memory_order_relaxed);
  std::int64_t next = seen;
  if (known > 0)
    next = known + (seen - known) / (seen > known ? share_of_more : share_of_less);
  figure.store(static_cast<std::uint32_t>(next), std::memory_order_relaxed);
}

void TaskCosts::learn(TaskKind kind, std::size_t bytes, Time taken, std::uint32_t transfers) {
  teach(_figures[indexOf(kind, bytes)], taken);
  teach(_transfer, taken / transfers);
}

} // namespace buttondriver
