// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/listening_program.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace buttondriver::simulator {

namespace {

namespace fs = std::filesystem;

constexpr const char *listening_state = "0A";
constexpr std::size_t most_letters = 15; // of a name that the system tells

/// The number of the socket in one line of net/tcp: "0: 0100007F:0BBB 00000000:0000 0A ...", the port and the state in
/// hexadecimal, the socket's number after five more columns.
std::optional<std::string> listening_socket(const std::string &line, std::uint16_t port) {
  std::istringstream words(line);
  std::string local;
  std::string state;
  std::string skipped;
  std::string socket;
  words >> skipped >> local >> skipped >> state >> skipped >> skipped >> skipped >> skipped >> skipped >> socket;
  const std::size_t colon = local.rfind(':');
  if (!words || state != listening_state || colon == std::string::npos)
    return std::nullopt;
  std::istringstream number(local.substr(colon + 1));
  unsigned found = 0;
  number >> std::hex >> found;
  return number && found == port ? std::optional(socket) : std::nullopt;
}

std::optional<std::string> listening_socket(const fs::path &processes, std::uint16_t port) {
  for (const char *table : {"net/tcp", "net/tcp6"}) {
    std::ifstream file(processes / table);
    for (std::string line; std::getline(file, line);)
      if (auto socket = listening_socket(line, port))
        return socket;
  }
  return std::nullopt;
}

bool has_open(const fs::path &process, const fs::path &file) {
  std::error_code refused;
  for (fs::directory_iterator descriptor(process / "fd", refused), end; !refused && descriptor != end;
       descriptor.increment(refused)) {
    std::error_code gone;
    if (fs::read_symlink(descriptor->path(), gone) == file)
      return true;
  }
  return false;
}

std::string first_part(const fs::path &file, char end) {
  std::ifstream input(file);
  std::string part;
  std::getline(input, part, end);
  return part;
}

/// The system cuts names off; how the program was called has the whole one, unless an interpreter was called.
std::string name_of(const fs::path &process) {
  const std::string name = first_part(process / "comm", '\n');
  const std::string called = fs::path(first_part(process / "cmdline", '\0')).filename().string();
  return name.size() == most_letters && called.compare(0, name.size(), name) == 0 ? called : name;
}

} // namespace

std::optional<std::string> listening_program(std::uint16_t port, const std::string &processes) {
  const auto socket = listening_socket(fs::path(processes), port);
  if (!socket)
    return std::nullopt;
  std::error_code refused;
  for (fs::directory_iterator process(processes, refused), end; !refused && process != end;
       process.increment(refused)) {
    const std::string id = process->path().filename().string();
    if (!std::all_of(id.begin(), id.end(), [](unsigned char letter) { return std::isdigit(letter) != 0; }) ||
        !has_open(process->path(), "socket:[" + *socket + "]"))
      continue;
    const std::string name = name_of(process->path());
    return (name.empty() ? "another program" : name) + " (pid " + id + ")";
  }
  return "another program";
}

} // namespace buttondriver::simulator
