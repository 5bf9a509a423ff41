// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace buttondriver::fuzz {

/// An input as the targets take it apart: files and texts in front, the numbers at the end.
class Seed {
public:
  explicit Seed(std::string_view bytes = {}) : _bytes(bytes) {}

  Seed &bytes(std::string_view more) {
    _bytes += more;
    return *this;
  }

  /// The next number that the target takes.
  template <class Integer> Seed &number(Integer value) {
    std::string digits;
    for (std::size_t i = sizeof value; i-- > 0;)
      digits += static_cast<char>(static_cast<std::uint64_t>(value) >> 8 * i & 0xFF);
    _numbers.insert(0, digits);
    return *this;
  }

  std::string input() const { return _bytes + _numbers; }

private:
  std::string _bytes;
  std::string _numbers;
};

/// The seeds of one target, each in a file of its own.
class SeedFolder {
public:
  SeedFolder(const std::filesystem::path &parent, const char *target) : _path(parent / target) {
    std::filesystem::create_directories(_path);
  }

  void write(const std::string &name, const Seed &seed) const {
    std::ofstream file(_path / name, std::ios::binary);
    file << seed.input();
    if (!file.flush())
      throw std::runtime_error("cannot write " + (_path / name).string());
  }

private:
  std::filesystem::path _path;
};

} // namespace buttondriver::fuzz
