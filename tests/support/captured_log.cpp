// SPDX-License-Identifier: Apache-2.0
#include "support/captured_log.h"

#include "files/owned_file.h"

#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <stdexcept>
#include <unistd.h>
#include <utility>

namespace buttondriver::test {

namespace {

std::mutex lines_mutex;
std::vector<std::string> lines;
QtMessageHandler previous_handler = nullptr;

void collect(QtMsgType type, const QMessageLogContext &, const QString &message) {
  const char *level = type == QtDebugMsg      ? "debug: "
                      : type == QtCriticalMsg ? "critical: "
                      : type == QtWarningMsg  ? "warning: "
                                              : "other: ";
  const std::lock_guard lock(lines_mutex);
  lines.push_back(level + message.toStdString());
}

} // namespace

CapturedLog::CapturedLog() {
  take();
  previous_handler = qInstallMessageHandler(collect);
}

CapturedLog::~CapturedLog() { qInstallMessageHandler(previous_handler); }

std::vector<std::string> CapturedLog::take() {
  const std::lock_guard lock(lines_mutex);
  return std::exchange(lines, {});
}

CapturedOutput::CapturedOutput() {
  std::fflush(stdout);
  const OwnedFile file(std::tmpfile());
  if (!file)
    throw std::runtime_error("no temporary file");
  _file.reset(::dup(::fileno(file.get())));
  _saved.reset(::dup(STDOUT_FILENO));
  ::dup2(_file.get(), STDOUT_FILENO);
}

CapturedOutput::~CapturedOutput() {
  // What nobody took may be the report of a failed expectation.
  const std::string rest = take();
  ::dup2(_saved.get(), STDOUT_FILENO);
  std::fputs(rest.c_str(), stdout);
  std::fflush(stdout);
}

std::string CapturedOutput::take() {
  std::fflush(stdout);
  std::string text;
  const off_t size = ::lseek(_file.get(), 0, SEEK_END);
  text.resize(static_cast<std::size_t>(size));
  const ssize_t got = ::pread(_file.get(), text.data(), text.size(), 0);
  text.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  if (::ftruncate(_file.get(), 0) != 0)
    throw std::runtime_error("the captured output cannot be emptied");
  ::lseek(_file.get(), 0, SEEK_SET);
  return text;
}

} // namespace buttondriver::test
