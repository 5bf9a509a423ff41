// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fuzz/support/require.h"

#include <cstdint>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace buttondriver::fuzz {

/// A regular file that exists in memory only, for as long as this does.
class MemoryFile {
public:
  explicit MemoryFile(const std::vector<std::uint8_t> &content) : _descriptor(::memfd_create("input", MFD_CLOEXEC)) {
    require(_descriptor >= 0, "there is memory for a file");
    if (!content.empty())
      require(::write(_descriptor, content.data(), content.size()) == static_cast<ssize_t>(content.size()),
              "a file in memory takes its content");
  }
  ~MemoryFile() { ::close(_descriptor); }
  MemoryFile(const MemoryFile &) = delete;
  MemoryFile &operator=(const MemoryFile &) = delete;

  /// A path under which this process can open it.
  std::string path() const { return "/proc/self/fd/" + std::to_string(_descriptor); }

private:
  int _descriptor;
};

} // namespace buttondriver::fuzz
