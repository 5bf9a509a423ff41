#include "logging/standard_output.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace buttondriver {

namespace {

std::atomic<PrintObserver> print_observer{nullptr};

void show_observer(PrintObserver observer, const char *format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int size = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (size < 0)
    return;
  std::string text(static_cast<std::size_t>(size) + 1, '\0');
  std::vsnprintf(text.data(), text.size(), format, arguments);
  text.pop_back();
  observer(text);
}

} // namespace

void print(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  flockfile(stdout);
  std::va_list observed;
  va_copy(observed, arguments);
  std::vprintf(format, arguments);
  std::fflush(stdout);
  if (const PrintObserver observer = print_observer.load())
    show_observer(observer, format, observed);
  va_end(observed);
  funlockfile(stdout);
  va_end(arguments);
}

void print_line(const char *text) { print("%s\n", text); }

void observe_prints(PrintObserver observer) { print_observer.store(observer); }

} // namespace buttondriver
