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

/// Observers see texts in the order in which they are written.
void write(std::string_view text) {
  static LogChannel standard_output(STDOUT_FILENO);
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  standard_output.write(text);
  if (const PrintObserver observer = print_observer.load())
    observer(text);
}

/// For texts that are longer than most.
void write_long(std::size_t size, const char *format, std::va_list arguments) {
  std::string text(size + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, arguments);
  text.pop_back();
  write(text);
}

} // namespace

void print(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::va_list again;
  va_copy(again, arguments);
  char text[512];
  const int formatted = std::vsnprintf(text, sizeof text, format, arguments);
  const auto size = static_cast<std::size_t>(formatted);
  if (formatted >= 0 && size < sizeof text)
    write({text, size});
  else if (formatted >= 0)
    write_long(size, format, again);
  va_end(again);
  va_end(arguments);
}

void print_line(const char *text) { print("%s\n", text); }

void print_text(std::string_view text) { write(text); }

void observe_prints(PrintObserver observer) { print_observer.store(observer); }

} // namespace buttondriver
