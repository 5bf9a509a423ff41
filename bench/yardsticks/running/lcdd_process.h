// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/child_process.h"
#include "support/temporary_folder.h"
#include "yardsticks/running/client.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver::yardsticks {

/// LCDd on a free port of this machine, with a configuration of its own in a folder that goes with this object. Nothing
/// of the system's is read or stopped. A client has one text on its screen. Throws std::runtime_error when LCDd does
/// not do its part.
class LcddProcess {
public:
  /// `package` is the folder that Debian's package lcdproc was unpacked into.
  explicit LcddProcess(const std::string &package);

  pid_t pid() const { return _process->pid(); }
  /// Sets a text of 16 characters so many times in a row; seconds of each, until all are answered.
  double secondsOfEach(int count);
  /// Sets it and waits for the answer, one after the other.
  std::vector<double> replySeconds(int count);

private:
  void command(const std::string &line);
  void waitForAnswers(int count);

  test::TemporaryFolder _folder;
  std::optional<bench::ChildProcess> _process;
  std::unique_ptr<Client> _client;
  std::string _unfinished_line;
};

} // namespace buttondriver::yardsticks
