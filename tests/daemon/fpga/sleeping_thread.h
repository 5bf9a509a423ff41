// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fstream>
#include <functional>
#include <string>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace buttondriver::test {

inline pid_t this_thread() { return static_cast<pid_t>(::syscall(SYS_gettid)); }

/// Whether a thread of this process waits for something.
inline bool is_asleep(pid_t thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string text;
  std::getline(file, text);
  // The state follows the name, which is in brackets and may hold anything.
  const std::size_t end = text.rfind(") ");
  return end != std::string::npos && text.compare(end, 3, ") S") == 0;
}

/// Returns when `thread` waits for something, or `done()`.
inline void wait_until_asleep(pid_t thread, const std::function<bool()> &done) {
  while (!done() && !is_asleep(thread))
    std::this_thread::yield();
}

} // namespace buttondriver::test
