// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace buttondriver::test {

/// A folder of one test's own, gone with all that is in it when the object goes.
class TemporaryFolder {
public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "buttondriver-test-XXXXXX").string();
    if (!::mkdtemp(name.data()))
      throw std::runtime_error("no temporary folder");
    _path = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(_path, ignored);
  }
  TemporaryFolder(const TemporaryFolder &) = delete;
  TemporaryFolder &operator=(const TemporaryFolder &) = delete;

  /// The path of `name` in the folder.
  std::string path(const std::string &name) const { return (_path / name).string(); }

  /// Writes a file into the folder and returns its path.
  std::string write(const std::string &name, const std::string &content) const {
    std::ofstream(path(name), std::ios::binary) << content;
    return path(name);
  }

private:
  std::filesystem::path _path;
};

/// What is in the file at `path`.
inline std::string read_file(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace buttondriver::test
