// SPDX-License-Identifier: Apache-2.0
// Runs kept inputs through a fuzz target, without a fuzzer: every file that is named, and every file in every folder
// that is named. A fault ends the program, as it does under the fuzzer; so does an input that takes too long.
//
//   <target>_replay FILE_OR_FOLDER...
#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unistd.h>
#include <vector>

namespace {

namespace filesystem = std::filesystem;

/// Far more than any input takes, under a sanitizer and on a busy machine too.
constexpr unsigned longest_seconds = 20;

std::vector<filesystem::path> files_at(const filesystem::path &place) {
  if (!filesystem::is_directory(place))
    return {place};
  std::vector<filesystem::path> files;
  for (const auto &entry : filesystem::directory_iterator(place))
    files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  return files;
}

bool run(const filesystem::path &path) {
  // The last line names the input that a fault ends with.
  std::fprintf(stderr, "%s\n", path.c_str());
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad())
    return false;
  // Exactly its size, so that a sanitizer sees the first read after it.
  const std::vector<std::uint8_t> input(content.begin(), content.end());
  ::alarm(longest_seconds);
  return LLVMFuzzerTestOneInput(input.data(), input.size()) == 0;
}

} // namespace

int main(int count, char **arguments) {
  std::size_t inputs = 0;
  for (int i = 1; i < count; ++i) {
    for (const filesystem::path &path : files_at(arguments[i])) {
      if (!run(path)) {
        std::fprintf(stderr, "cannot be run\n");
        return 1;
      }
      ++inputs;
    }
  }
  ::alarm(0);
  std::fprintf(stderr, "%zu inputs\n", inputs);
  return inputs > 0 ? 0 : 1;
}
