// SPDX-License-Identifier: Apache-2.0
#include "simulator/notices/notices.h"

#include "logging/standard_output.h"

#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace buttondriver::simulator {

namespace {

Notices chosen = Notices::usual;
bool is_log_moved = false;
// Where notices go while the log goes elsewhere; -1 where there was no such channel.
int own_output = -1;
int own_error = -1;

std::string formatted(const char *format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int size = std::vsnprintf(nullptr, 0, format, arguments);
  std::string text(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

/// What the terminal does not take is lost.
void write_to(int descriptor, const std::string &text) {
  [[maybe_unused]] const ssize_t written = ::write(descriptor, text.data(), text.size());
}

void say(const char *format, std::va_list arguments) {
  const std::string text = formatted(format, arguments);
  if (is_log_moved)
    write_to(own_output, text);
  else
    print_text(text);
}

} // namespace

void choose_notices(Notices notices) { chosen = notices; }

int move_log(const char *file) {
  const int opened = ::open(file, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND | O_CLOEXEC, 0666);
  if (opened < 0)
    return -1;
  // Where a standard channel is closed, the file has got its number.
  const int log = ::fcntl(opened, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  ::close(opened);
  if (log < 0)
    return -1;
  own_output = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  own_error = ::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  is_log_moved = ::dup2(log, STDOUT_FILENO) >= 0 && ::dup2(log, STDERR_FILENO) >= 0;
  ::close(log);
  return is_log_moved ? 0 : -1;
}

void tell(const char *format, ...) {
  if (chosen == Notices::faults)
    return;
  std::va_list arguments;
  va_start(arguments, format);
  say(format, arguments);
  va_end(arguments);
}

void tell_detail(const char *format, ...) {
  if (chosen != Notices::all)
    return;
  std::va_list arguments;
  va_start(arguments, format);
  say(format, arguments);
  va_end(arguments);
}

void tell_fault(const char *format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const std::string text = formatted(format, arguments);
  va_end(arguments);
  if (is_log_moved)
    write_to(own_error, text);
  else
    print_error("%s", text.c_str());
}

} // namespace buttondriver::simulator
