// SPDX-License-Identifier: Apache-2.0
#include "fleet/measure/steady_load.h"

#include <chrono>
#include <thread>

namespace buttondriver::fleet {

double publish_evenly(Publisher &publisher, WantedPanels &panels, double per_second, std::size_t count) {
  using Clock = std::chrono::steady_clock;
  const auto start = Clock::now();
  const auto seconds = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
  for (std::size_t published = 0; published < count;) {
    // What has become due while this thread slept goes at once: some ten of them each millisecond.
    const auto due = static_cast<std::size_t>(seconds() * per_second) + 1;
    for (; published < due && published < count; ++published) {
      const Wish wish = panels.next();
      publisher.publish(wish.topic, wish.payload);
    }
    std::this_thread::sleep_until(
        start + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds() + 1e-3)));
  }
  return static_cast<double>(count) / seconds();
}

} // namespace buttondriver::fleet
