// SPDX-License-Identifier: Apache-2.0
#include "refused_watches.h"

#include <cerrno>
#include <cstdint>
#include <sys/syscall.h>
#include <unistd.h>
#include <utility>

namespace {

std::function<bool(const std::string &path)> refused;

} // namespace

extern "C" int inotify_add_watch(int descriptor, const char *path, std::uint32_t mask) noexcept {
  if (refused && refused(path)) {
    errno = ENOSPC;
    return -1;
  }
  return static_cast<int>(::syscall(SYS_inotify_add_watch, descriptor, path, mask));
}

namespace buttondriver::test {

RefusedWatches::RefusedWatches(std::function<bool(const std::string &path)> is_refused) {
  refused = std::move(is_refused);
}

RefusedWatches::~RefusedWatches() { refused = nullptr; }

} // namespace buttondriver::test
