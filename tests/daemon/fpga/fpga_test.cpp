// SPDX-License-Identifier: Apache-2.0
#include "fpga/fpga.h"

#include "support/captured_log.h"
#include "support/device/facade_fixture.h"

#include <gmock/gmock.h>

#include <condition_variable>
#include <mutex>
#include <thread>

namespace buttondriver {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

/// A 1 x 1 picture, red, in a 24-bit BMP file.
const QByteArray red_pixel = QByteArray::fromHex("424d 3a000000 0000 0000 36000000 28000000 01000000 01000000 0100 1800"
                                                 "00000000 00000000 00000000 00000000 00000000 00000000 0000ff 00");

class FPGATest : public test::FacadeFixture {};

TEST_F(FPGATest, blackout_of_all_screens_is_the_first_hardware_action) {
  fpga.emplace(root.paths());
  EXPECT_THAT(finishedTransfers(), ElementsAreArray(test::blackout_of_all_screens));
  EXPECT_THAT(device.opened_paths, ElementsAre("/dev/fpga-reg"));
}

TEST_F(FPGATest, tasks_of_different_kinds_run_in_the_order_they_were_queued) {
  startFacade();
  fpga->setLEDButtonState(5, 1);
  fpga->setTFTIntensity(50);
  fpga->setLEDStatusIndicator(3, 1);
  fpga->setLEDToggleIndicator(1, 1);
  fpga->setLEDButtonState(5, 0);
  EXPECT_THAT(finishedTransfers(),
              ElementsAre("w 0900 1 6500", "w 0800 1 df00", "w 0900 1 a300", "w 1003 1 0002", "w 0900 1 4500"));
}

TEST_F(FPGATest, a_picture_outlives_the_message_that_brought_it) {
  startFacade();
  {
    QByteArray message = QByteArray(20, '\0') + red_pixel;
    fpga->drawTFTImage(1, 10, 20, SharedBytes(message, 20));
    message.fill('\xFF');
  }
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0a04 1 0000", "w 0a04 1 4500", "w 0a05 1 1515", //
                                               "w 0a04 1 0000", "w 0a04 1 4400", "w 0a05 1 0e0e", //
                                               "w 0a04 1 0000", "w 0a04 1 2100", "w 0a05 1 0000", //
                                               "w 0a04 1 0000", "w 0a04 1 2200", "w 0a05 1 f800", //
                                               "w 0a0e 1 0000", "w 0a0e 1 4400", "w 0a0f 1 8304", //
                                               "w 0a0e 1 0000", "w 0a0e 1 4500", "w 0a0f 1 8001"));
}

TEST_F(FPGATest, faults_are_printed_when_the_task_runs_and_the_next_one_follows) {
  startFacade();
  test::CapturedOutput output;
  fpga->blackoutScreen(3);
  fpga->setTFTIntensity(101);
  fpga->setTFTIntensity(-1);
  fpga->textLine(7, 0, "text", true);
  fpga->subTextLine(-2, 0, 0, 1, "x", 0, 0);
  fpga->drawTFTImage(0, 0, 0, SharedBytes(QByteArray(20, 'x'), 20));
  fpga->setLEDStatusIndicator(0, 1);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 a000"));
  EXPECT_EQ(output.take(), "Invalid screen ID 3.\n"
                           "TFT Intensity is out of range: Must be between 0 and 100 %.\n"
                           "TFT Intensity is out of range: Must be between 0 and 100 %.\n"
                           "Invalid screen ID 7.\n"
                           "Invalid screen ID -2.\n"
                           "Input parameter 'data' pointer is NULL.");
}

TEST_F(FPGATest, a_failing_device_changes_nothing_for_the_callers) {
  device.result = -1;
  startFacade();
  fpga->setLEDStatusIndicator(1, 1);
  fpga->setLEDStatusIndicator(2, 1);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 a100", "w 0900 1 a200"));
}

/// Waits when executed until it is let go, and reports its end.
class GatedTask : public FPGATask {
public:
  struct Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool entered = false;
    bool open = false;
    int finished = 0;
    int deleted = 0;
  };

  explicit GatedTask(Gate *gate) : _gate(gate) {}
  ~GatedTask() override {
    const std::lock_guard lock(_gate->mutex);
    ++_gate->deleted;
  }
  void execute() override {
    std::unique_lock lock(_gate->mutex);
    _gate->entered = true;
    _gate->changed.notify_all();
    _gate->changed.wait(lock, [this] { return _gate->open; });
    ++_gate->finished;
  }

private:
  Gate *_gate;
};

TEST_F(FPGATest, destruction_waits_for_the_running_task_and_deletes_them_all) {
  startFacade();
  GatedTask::Gate gate;
  constexpr int queued = 1000;
  for (int i = 0; i < queued; ++i)
    fpga->queue(std::make_unique<GatedTask>(&gate));
  {
    std::unique_lock lock(gate.mutex);
    ASSERT_TRUE(gate.changed.wait_for(lock, std::chrono::seconds(10), [&] { return gate.entered; }));
  }
  std::thread opener([&] {
    const std::lock_guard lock(gate.mutex);
    gate.open = true;
    gate.changed.notify_all();
  });
  fpga.reset();
  EXPECT_GE(gate.finished, 1);
  EXPECT_EQ(gate.deleted, queued);
  opener.join();
}

TEST_F(FPGATest, destruction_of_an_idle_facade_runs_nothing) {
  startFacade();
  fpga.reset();
  EXPECT_TRUE(device.take().empty());
}

} // namespace
} // namespace buttondriver
