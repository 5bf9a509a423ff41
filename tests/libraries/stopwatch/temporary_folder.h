// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

namespace stopwatch::test {

/// A folder of its own for one test, removed with all that is in it.
class TemporaryFolder {
public:
  TemporaryFolder() : _path(testing::TempDir() + "stopwatch_XXXXXX") {
    if (!::mkdtemp(_path.data()))
      throw std::runtime_error("no temporary folder");
  }
  ~TemporaryFolder() { std::filesystem::remove_all(_path); }
  TemporaryFolder(const TemporaryFolder &) = delete;
  TemporaryFolder &operator=(const TemporaryFolder &) = delete;

  std::string file(const std::string &name) const { return _path + "/" + name; }

private:
  std::string _path;
};

inline std::string content_of(const std::string &path) {
  std::ifstream file(path);
  std::ostringstream content;
  content << file.rdbuf();
  return file.is_open() ? content.str() : "(no such file)";
}

} // namespace stopwatch::test
