// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/fpga.h"

#include <future>
#include <memory>
#include <utility>

namespace buttondriver::test {

/// Keeps the facade's worker busy with one task, from its begin on and until its own end. `fpga` outlives it.
class BusyWorker {
public:
  explicit BusyWorker(FPGA &fpga) {
    std::promise<void> begun;
    std::future<void> has_begun = begun.get_future();
    fpga.queue(std::make_unique<WaitingTask>(std::move(begun), _end.get_future()));
    has_begun.wait();
  }
  ~BusyWorker() { _end.set_value(); }
  BusyWorker(const BusyWorker &) = delete;
  BusyWorker &operator=(const BusyWorker &) = delete;

private:
  class WaitingTask : public FPGATask {
  public:
    WaitingTask(std::promise<void> begun, std::future<void> end) : _begun(std::move(begun)), _end(std::move(end)) {}
    void execute() override {
      _begun.set_value();
      _end.wait();
    }

  private:
    std::promise<void> _begun;
    std::future<void> _end;
  };

  std::promise<void> _end;
};

} // namespace buttondriver::test
