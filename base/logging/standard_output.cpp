// SPDX-License-Identifier: Apache-2.0
#include "logging/standard_output.h"

#include "logging/log_channel.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <unistd.h>

namespace buttondriver {

namespace {

std::atomic<PrintObserver> print_observer{nullptr};

/// What the program has written with stdio so far goes first; the daemon never has any there. Observers see texts in
/// the order in which they are written.
void write(std::string_view text) {
  static LogChannel standard_output(STDOUT_FILENO);
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  std::fflush(stdout);
  standard_output.write(text);
  if (const PrintObserver observer = print_observer.load())
    observer(text);
}

} // namespace

int print(const char *format, ...) {
  std::va_list arguments;
  char usual_text[512];
  va_start(arguments, format);
  const int formatted = std::vsnprintf(usual_text, sizeof usual_text, format, arguments);
  va_end(arguments);
  if (formatted < 0)
    return formatted;
  const auto size = static_cast<std::size_t>(formatted);
  if (size < sizeof usual_text) {
    write({usual_text, size});
    return formatted;
  }
  std::string long_text(size + 1, '\0'); // with the NUL at its end
  va_start(arguments, format);
  std::vsnprintf(long_text.data(), long_text.size(), format, arguments);
  va_end(arguments);
  write({long_text.data(), size});
  return formatted;
}

void print_line(const char *text) { print("%s\n", text); }

void print_text(std::string_view text) { write(text); }

void observe_prints(PrintObserver observer) { print_observer.store(observer); }

} // namespace buttondriver
