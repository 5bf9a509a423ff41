// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <QString>
#include <QtGlobal>

#include <string>
#include <vector>

namespace buttondriver::test {

/// Collects the lines of the Qt message channel while it lives, each as "debug: text" or "critical: text".
/// One at a time; messages of other threads are collected too.
class CapturedLog {
public:
  CapturedLog();
  ~CapturedLog();
  CapturedLog(const CapturedLog &) = delete;
  CapturedLog &operator=(const CapturedLog &) = delete;

  /// What came so far; the collection then starts again.
  std::vector<std::string> take();
};

/// Collects what is written to standard output while it lives, by any thread and by child code that uses stdio.
class CapturedOutput {
public:
  CapturedOutput();
  ~CapturedOutput();
  CapturedOutput(const CapturedOutput &) = delete;
  CapturedOutput &operator=(const CapturedOutput &) = delete;

  /// What came so far; the collection then starts again.
  std::string take();

private:
  OwnedDescriptor _saved;
  OwnedDescriptor _file;
};

} // namespace buttondriver::test
