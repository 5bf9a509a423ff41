// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/fpga.h"
#include "fpga/queue/fpga_task.h"
#include "panel/leds.h"
#include "panel/panel_lib.h"
#include "support/device/recording_device.h"
#include "support/test_root.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <semaphore.h>
#include <string>
#include <vector>

namespace buttondriver::test {

/// Transfers of the blackout of all screens, the first thing that a facade has carried out.
inline const std::vector<std::string> blackout_of_all_screens = {
    "w 0a0e 1 0000", "w 0a0e 1 4400", "w 0a0f 1 8304", //
    "w 0a0e 1 0000", "w 0a0e 1 4500", "w 0a0f 1 8001", //
    "w 0a0e 1 0000", "w 0a0e 1 2100", "w 0a0f 1 0000", //
    "w 0a0e 1 0000", "w 0a0e 1 2200", "w 0a0f 16384 0000 * 16384",
};

/// A facade over a device that remembers, with files of its own.
class FacadeFixture : public testing::Test {
protected:
  ~FacadeFixture() override {
    fpga.reset();
    panel::panel_lib_done();
    panel::toggle_indicator_bits = 0;
  }

  /// Makes the facade and forgets the transfers of its start.
  void startFacade() {
    fpga.emplace(root.paths());
    finishedTransfers();
  }

  /// Waits until all work queued so far is done.
  void settle() {
    sem_t done;
    sem_init(&done, 0, 0);
    fpga->queue(std::make_unique<PostTask>(&done));
    timespec limit{};
    clock_gettime(CLOCK_REALTIME, &limit);
    limit.tv_sec += 10;
    EXPECT_EQ(sem_timedwait(&done, &limit), 0) << "the worker did not finish";
    sem_destroy(&done);
  }

  /// The transfers of all work queued so far, once it is done.
  std::vector<std::string> finishedTransfers() {
    settle();
    return device.takeLines();
  }

  TestRoot root;
  RecordingDevice device;
  std::optional<FPGA> fpga;

private:
  class PostTask : public FPGATask {
  public:
    explicit PostTask(sem_t *done) : _done(done) {}
    void execute() override { sem_post(_done); }

  private:
    sem_t *_done;
  };
};

} // namespace buttondriver::test
