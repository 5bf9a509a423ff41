#include "logging/standard_output.h"

#include <cstdarg>
#include <cstdio>

namespace buttondriver {

void print(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  flockfile(stdout);
  std::vprintf(format, arguments);
  std::fflush(stdout);
  funlockfile(stdout);
  va_end(arguments);
}

void print_line(const char *text) { print("%s\n", text); }

} // namespace buttondriver
