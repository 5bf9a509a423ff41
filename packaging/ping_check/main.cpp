// SPDX-License-Identifier: Apache-2.0
// Asks a daemon that was just started whether it answers. A daemon that cannot have its port runs on without a server;
// the unit learns by this program that it has to be started again.
#include "packaging/ping_check/ping_check.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <thread>

namespace {

constexpr int status_no_answer = 1;
constexpr int status_usage = 2;
constexpr double longest_seconds = 3600;
/// A refusal comes at once, and nothing tells when somebody begins to listen.
constexpr std::chrono::milliseconds pause{50};

/// 0 for a text that is no time.
double seconds_of(const char *text) {
  char *end = nullptr;
  const double seconds = std::strtod(text, &end);
  return end == text || *end != '\0' || !std::isfinite(seconds) || seconds > longest_seconds ? 0 : seconds;
}

bool is_port(const char *text) {
  char *end = nullptr;
  const long port = std::strtol(text, &end, 10);
  return end != text && *end == '\0' && port >= 1 && port <= 65535;
}

} // namespace

int main(int argc, char **argv) {
  if (argc != 4 || !is_port(argv[2]) || !(seconds_of(argv[3]) > 0)) {
    std::fputs("usage: ping-check ADDRESS PORT SECONDS\n"
               "Waits until a buttondriver answers a ping; ends with status 1 when none does in time.\n"
               "ADDRESS is a number such as 127.0.0.1, PORT is 1 to 65535, SECONDS may have a fraction.\n",
               stderr);
    return status_usage;
  }
  const auto time = std::chrono::milliseconds(static_cast<long>(std::ceil(seconds_of(argv[3]) * 1000)));
  const std::string fault =
      buttondriver::fault_of({argv[1], argv[2], time}, [] { std::this_thread::sleep_for(pause); });
  if (fault.empty())
    return 0;
  // What the journal takes as an error, so that it is kept where the lines of the daemon are left out.
  const char *level = std::getenv("JOURNAL_STREAM") ? "<3>" : "";
  std::fprintf(stderr, "%sping-check: no answer from %s port %s within %s s: %s\n", level, argv[1], argv[2], argv[3],
               fault.c_str());
  return status_no_answer;
}
