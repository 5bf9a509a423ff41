// SPDX-License-Identifier: Apache-2.0
#include "logging/standard_output.h"

#include "logging/channels/log_channels.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

namespace buttondriver {

namespace {

using Channel = LogChannels::Channel;

std::atomic<PrintObserver> print_observer{nullptr};

/// Observers see texts in the order in which they are written.
void write(Channel channel, std::string_view text) {
  const PrintObserver observer = channel == Channel::output ? print_observer.load() : nullptr;
  if (!observer)
    return LogChannels::ofProcess().write(channel, text);
  static std::mutex mutex;
  const std::lock_guard lock(mutex);
  LogChannels::ofProcess().write(channel, text);
  observer(text);
}

int write_formatted(Channel channel, const char *format, std::va_list arguments) {
  std::va_list arguments_again;
  va_copy(arguments_again, arguments);
  char usual_text[512];
  const int formatted = std::vsnprintf(usual_text, sizeof usual_text, format, arguments);
  const auto size = static_cast<std::size_t>(formatted);
  if (formatted >= 0 && size < sizeof usual_text) {
    write(channel, {usual_text, size});
  } else if (formatted >= 0) {
    std::string long_text(size + 1, '\0'); // with the NUL at its end
    std::vsnprintf(long_text.data(), long_text.size(), format, arguments_again);
    write(channel, {long_text.data(), size});
  }
  va_end(arguments_again);
  return formatted;
}

} // namespace

int print(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int formatted = write_formatted(Channel::output, format, arguments);
  va_end(arguments);
  return formatted;
}

int print_error(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const int formatted = write_formatted(Channel::error, format, arguments);
  va_end(arguments);
  return formatted;
}

void print_line(const char *text) { print("%s\n", text); }

void print_text(std::string_view text) { write(Channel::output, text); }

void observe_prints(PrintObserver observer) { print_observer.store(observer); }

} // namespace buttondriver
