// SPDX-License-Identifier: Apache-2.0
#include "server/limits.h"

#include <algorithm>
#include <sys/resource.h>

namespace buttondriver::limits {

std::size_t possible_connections() {
  rlimit descriptors{};
  if (::getrlimit(RLIMIT_NOFILE, &descriptors) != 0)
    return connections;
  const auto all = std::min<rlim_t>(descriptors.rlim_cur, connections + other_descriptors);
  // With very few of them, half are for clients.
  return static_cast<std::size_t>(all - std::min<rlim_t>(other_descriptors, all / 2));
}

} // namespace buttondriver::limits
