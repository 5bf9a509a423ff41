// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <vector>

namespace buttondriver::test {

/// While this lives, the process cannot open anything: its descriptors are used up, but for those that are given back.
class UsedUpDescriptors {
public:
  UsedUpDescriptors() {
    EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &_usual), 0);
    rlimit few = _usual;
    few.rlim_cur = 128;
    EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
    while (OwnedDescriptor next{::open("/", O_PATH | O_CLOEXEC)})
      _taken.push_back(std::move(next));
  }
  ~UsedUpDescriptors() { ::setrlimit(RLIMIT_NOFILE, &_usual); }
  UsedUpDescriptors(const UsedUpDescriptors &) = delete;
  UsedUpDescriptors &operator=(const UsedUpDescriptors &) = delete;

  void giveOneBack() { _taken.pop_back(); }

private:
  rlimit _usual{};
  std::vector<OwnedDescriptor> _taken;
};

} // namespace buttondriver::test
