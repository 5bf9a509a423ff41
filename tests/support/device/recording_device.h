// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/register_device.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace buttondriver::test {

/// A register device that remembers every transfer, in place of the real one while it lives. Safe to use from the
/// worker thread and the test at once.
class RecordingDevice : public panel::RegisterDevice {
public:
  struct Transfer {
    unsigned long request;
    panel::TransferRecord record;
    std::vector<std::uint16_t> words; ///< what was written; empty for a read
  };

  RecordingDevice();
  ~RecordingDevice() override;

  int open(const char *path) override;
  int transfer(int descriptor, unsigned long request, panel::TransferRecord &record, std::uint16_t *words) override;

  /// What every transfer returns.
  int result = 0;
  /// Called on the transferring thread before a transfer is remembered; may change the record, and may wait.
  std::function<void(panel::TransferRecord &)> before_transfer;

  /// The transfers so far; the record then starts again.
  std::vector<Transfer> take();
  /// As take, each as "w 0a0e 1 0000", pixels runs of more than four words as "w 0a0f 16384 0000 * 16384" when all are
  /// alike and as their count alone, "w 0a03 2048 ...", when not.
  std::vector<std::string> takeLines();
  /// Waits until at least `count` transfers are remembered; false after ten seconds.
  bool waitFor(std::size_t count);
  std::vector<std::string> opened_paths;

private:
  std::mutex _mutex;
  std::condition_variable _grown;
  std::vector<Transfer> _transfers;
};

} // namespace buttondriver::test
