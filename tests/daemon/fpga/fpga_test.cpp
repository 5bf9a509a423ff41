// SPDX-License-Identifier: Apache-2.0
#include "fpga/fpga.h"

#include "panel/formats/font.h"
#include "sleeping_thread.h"
#include "support/captured_log.h"
#include "support/device/facade_fixture.h"
#include "support/event_loop.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <functional>
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

TEST_F(FPGATest, backlog_is_low_only_if_it_still_is_when_the_main_thread_hears_of_it) {
  QueueMarks marks;
  marks.high_tasks = 2;
  marks.low_tasks = 1;
  fpga.emplace(root.paths(), marks);
  finishedTransfers();
  std::vector<std::string> emitted;
  QObject::connect(&*fpga, &FPGA::backlogHigh, [&] { emitted.emplace_back("high"); });
  QObject::connect(&*fpga, &FPGA::backlogLow, [&] { emitted.emplace_back("low"); });
  const auto queue_four = [this](GatedTask::Gate &gate) {
    for (int i = 0; i < 4; ++i)
      fpga->queue(std::make_unique<GatedTask>(&gate));
  };
  const auto open = [](GatedTask::Gate &gate) {
    const std::lock_guard lock(gate.mutex);
    gate.open = true;
    gate.changed.notify_all();
  };
  GatedTask::Gate first;
  GatedTask::Gate second;
  queue_four(first);
  open(first);
  settle();
  queue_four(second);
  EXPECT_THAT(emitted, ElementsAre("high", "high"));
  test::process_ready_events();
  EXPECT_THAT(emitted, ElementsAre("high", "high"));
  open(second);
  EXPECT_TRUE(test::process_events_until([&] { return emitted.size() > 2; }));
  settle();
  test::process_ready_events();
  EXPECT_THAT(emitted, ElementsAre("high", "high", "low"));
}

TEST_F(FPGATest, destruction_waits_for_the_running_task_and_deletes_the_others_without_running_them) {
  startFacade();
  GatedTask::Gate gate;
  constexpr int queued = 1000;
  for (int i = 0; i < queued; ++i)
    fpga->queue(std::make_unique<GatedTask>(&gate));
  {
    std::unique_lock lock(gate.mutex);
    ASSERT_TRUE(gate.changed.wait_for(lock, std::chrono::seconds(10), [&] { return gate.entered; }));
  }
  std::atomic<bool> is_destroying{false};
  std::thread opener([&, destroyer = test::this_thread()] {
    while (!is_destroying)
      std::this_thread::yield();
    // It sleeps where it waits for the worker; by then the worker has been told to stop.
    test::wait_until_asleep(destroyer, [] { return false; });
    const std::lock_guard lock(gate.mutex);
    gate.open = true;
    gate.changed.notify_all();
  });
  is_destroying = true;
  fpga.reset();
  EXPECT_EQ(gate.finished, 1);
  EXPECT_EQ(gate.deleted, queued);
  opener.join();
}

TEST_F(FPGATest, what_the_timer_queues_makes_nobody_pause_and_what_clients_queue_after_it_does) {
  QueueMarks marks;
  marks.high_tasks = 3;
  fpga.emplace(root.paths(), marks);
  finishedTransfers();
  int pauses = 0;
  QObject::connect(&*fpga, &FPGA::backlogHigh, [&] { ++pauses; });
  GatedTask::Gate gate;
  fpga->queueForTimer([&] {
    for (int i = 0; i < 10; ++i)
      fpga->queue(std::make_unique<GatedTask>(&gate));
  });
  EXPECT_EQ(pauses, 0);
  for (int i = 0; i < 4; ++i)
    fpga->queue(std::make_unique<GatedTask>(&gate));
  EXPECT_EQ(pauses, 1);
  {
    const std::lock_guard lock(gate.mutex);
    gate.open = true;
    gate.changed.notify_all();
  }
  settle();
}

/// Runs a function when executed.
class FunctionTask : public FPGATask {
public:
  explicit FunctionTask(std::function<void()> work) : _work(std::move(work)) {}
  void execute() override { _work(); }

private:
  std::function<void()> _work;
};

using Size = std::pair<int, int>;

TEST_F(FPGATest, the_font_is_not_changed_while_a_task_runs) {
  root.writeFontSize(8, 16);
  startFacade();
  root.writeFontSize(12, 24);
  std::atomic<bool> is_running{false};
  std::atomic<bool> is_changing{false};
  std::atomic<bool> is_changed{false};
  std::vector<Size> sizes;
  const auto measure = [&] {
    Size size;
    panel::glyph_cell_size(&size.first, &size.second);
    sizes.push_back(size);
  };
  fpga->queue(std::make_unique<FunctionTask>([&, main_thread = test::this_thread()] {
    is_running = true;
    while (!is_changing)
      std::this_thread::yield();
    test::wait_until_asleep(main_thread, [&] { return is_changed.load(); });
    measure();
  }));
  fpga->queue(std::make_unique<FunctionTask>(measure));
  while (!is_running)
    std::this_thread::yield();
  is_changing = true;
  fpga->check_font_settings(root.launcherConfiguration());
  is_changed = true;
  settle();
  EXPECT_THAT(sizes, ElementsAre(Size(8, 16), Size(12, 24)));
}

TEST_F(FPGATest, text_is_black_on_white_or_white_on_black) {
  root.writeFontSize(8, 16);
  startFacade();
  for (const bool is_white_on_black : {false, true}) {
    fpga->textLine(0, 0, "", is_white_on_black);
    EXPECT_THAT(finishedTransfers(),
                testing::Contains(is_white_on_black ? "w 0a03 2048 0000 * 2048" : "w 0a03 2048 ffff * 2048"));
  }
}

TEST_F(FPGATest, a_text_after_a_blackout_is_on_the_black_screen) {
  root.writeFontSize(8, 16);
  startFacade();
  fpga->blackoutScreen(0);
  fpga->textLine(0, 0, "A", true);
  settle();
  // What screen 0 shows: runs of pixels go to the rows that register 0x45 holds then.
  std::vector<std::uint16_t> screen(128 * 128, 0x1234);
  std::uint16_t index = 0;
  std::uint16_t rows = 0;
  for (const auto &transfer : device.take()) {
    const unsigned address = transfer.record.address_low & panel::short_form::address_mask;
    if (address == 0xA02 || address == 0xA0E)
      index = transfer.words.at(0);
    else if ((address == 0xA03 || address == 0xA0F) && transfer.words.size() == 1 && index == 0x4500)
      rows = transfer.words[0];
    else if (transfer.words.size() > 1)
      std::copy(transfer.words.begin(), transfer.words.end(), screen.begin() + ((rows & 0xFF) - 1) * 128);
  }
  const auto count = [&](std::size_t first, std::size_t last, std::uint16_t pixel) {
    return std::count(screen.begin() + static_cast<std::ptrdiff_t>(first * 128),
                      screen.begin() + static_cast<std::ptrdiff_t>(last * 128), pixel);
  };
  EXPECT_GT(count(0, 16, 0xFFFF), 0);
  EXPECT_EQ(count(0, 16, 0xFFFF) + count(0, 16, 0x0000), 16 * 128);
  EXPECT_EQ(count(16, 128, 0x0000), 112 * 128);
}

TEST_F(FPGATest, a_picture_given_as_a_pointer_is_copied_as_far_as_it_claims_to_go) {
  startFacade();
  fpga->drawTFTImage(1, 10, 20, SharedBytes(red_pixel, 0));
  const std::vector<std::string> expected = finishedTransfers();
  std::vector<std::uint8_t> bytes(red_pixel.begin(), red_pixel.end() - 1); // the padding need not be there
  fpga->drawTFTImage(1, 10, 20, bytes.data());
  std::fill(bytes.begin(), bytes.end(), std::uint8_t{0xFF});
  EXPECT_EQ(finishedTransfers(), expected);
  test::CapturedOutput output;
  const std::uint8_t *const no_bytes = nullptr;
  fpga->drawTFTImage(1, 10, 20, no_bytes);
  EXPECT_TRUE(finishedTransfers().empty());
  EXPECT_EQ(output.take(), "Input parameter 'data' pointer is NULL.");
}

TEST_F(FPGATest, destruction_of_an_idle_facade_runs_nothing) {
  startFacade();
  fpga.reset();
  EXPECT_TRUE(device.take().empty());
}

} // namespace
} // namespace buttondriver
