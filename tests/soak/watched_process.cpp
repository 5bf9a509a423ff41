// SPDX-License-Identifier: Apache-2.0
#include "soak/watched_process.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <unistd.h>

namespace buttondriver::soak {

namespace {

constexpr int listening = 0x0A;

std::filesystem::directory_iterator entries(const std::string &folder) {
  std::error_code ignored;
  return std::filesystem::directory_iterator(folder, ignored);
}

} // namespace

bool WatchedProcess::isAlive() const { return memoryKib() > 0; }

long WatchedProcess::memoryKib() const {
  std::ifstream status(_folder + "/status");
  std::string word;
  long kib = 0;
  while (status >> word)
    if (word == "VmRSS:" && status >> kib)
      return kib;
  return 0;
}

int WatchedProcess::descriptors() const {
  int count = 0;
  for (auto entry = entries(_folder + "/fd"); entry != std::filesystem::directory_iterator(); ++entry)
    ++count;
  return count;
}

double WatchedProcess::processorSeconds() const {
  std::ifstream stat(_folder + "/stat");
  std::string line;
  std::getline(stat, line);
  // The name in parentheses may hold anything; user and system time are the 12th and 13th word after it.
  std::istringstream words(line.substr(std::min(line.rfind(')'), line.size() - 1) + 1));
  std::string skipped;
  for (int i = 0; i < 11; ++i)
    words >> skipped;
  long user = 0;
  long system = 0;
  words >> user >> system;
  return static_cast<double>(user + system) / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

std::uint16_t WatchedProcess::listeningPort() const {
  for (const Socket &socket : sockets())
    if (socket.state == listening)
      return socket.port;
  return 0;
}

WatchedProcess::Waiting WatchedProcess::waiting() const {
  unsigned long unread = 0;
  unsigned long unsent = 0;
  for (const Socket &socket : sockets()) {
    if (socket.state == listening)
      continue;
    unread += socket.unread;
    unsent += socket.unsent;
  }
  return {static_cast<long>(unread / 1024), static_cast<long>(unsent / 1024)};
}

std::vector<WatchedProcess::Socket> WatchedProcess::sockets() const {
  std::set<unsigned long> own;
  for (auto entry = entries(_folder + "/fd"); entry != std::filesystem::directory_iterator(); ++entry) {
    std::error_code ignored;
    const std::string link = std::filesystem::read_symlink(entry->path(), ignored).string();
    unsigned long inode = 0;
    if (std::sscanf(link.c_str(), "socket:[%lu]", &inode) == 1)
      own.insert(inode);
  }
  std::vector<Socket> found;
  for (const char *table : {"/net/tcp", "/net/tcp6"}) {
    std::ifstream lines(_folder + table);
    std::string line;
    while (std::getline(lines, line)) {
      unsigned port = 0;
      unsigned state = 0;
      unsigned long unsent = 0;
      unsigned long unread = 0;
      unsigned long inode = 0;
      const int items =
          std::sscanf(line.c_str(), "%*d: %*[0-9A-F]:%x %*[0-9A-F]:%*x %x %lx:%lx %*x:%*x %*x %*d %*d %lu", &port,
                      &state, &unsent, &unread, &inode);
      if (items == 5 && own.count(inode) == 1)
        found.push_back({static_cast<std::uint16_t>(port), static_cast<int>(state), unsent, unread});
    }
  }
  return found;
}

} // namespace buttondriver::soak
