// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

/// This test program has an inotify_add_watch of its own, in front of that of the C library.
namespace buttondriver::test {

/// While this lives, the kernel refuses to watch the paths for which `is_refused` is true, as if it watched enough.
class RefusedWatches {
public:
  explicit RefusedWatches(std::function<bool(const std::string &path)> is_refused);
  ~RefusedWatches();
  RefusedWatches(const RefusedWatches &) = delete;
  RefusedWatches &operator=(const RefusedWatches &) = delete;
};

} // namespace buttondriver::test
