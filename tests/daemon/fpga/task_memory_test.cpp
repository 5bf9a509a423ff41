// SPDX-License-Identifier: Apache-2.0
#include "fpga/fpga.h"

#include "counted_allocations.h"
#include "logging/channels/log_channels.h"
#include "panel/panel_lib.h"
#include "panel/registers/register_device.h"
#include "support/device/busy_worker.h"
#include "support/test_root.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <semaphore.h>
#include <string>
#include <utility>

namespace buttondriver {
namespace {

TEST(TaskMemoryTest, the_queue_takes_none_for_tasks_as_many_as_it_has_had) {
  struct Row {
    const char *name;
    std::function<void(TaskQueue &)> append;
  };
  const std::string line(32, 'x');
  const SharedBytes picture(QByteArray(1000, 'x'), 0);
  constexpr auto client = TaskOrigin::client;
  const Row rows[] = {
      {"status LED", [](TaskQueue &queue) { queue.emplace<SetLEDStatusIndicatorTask>(client, 1, 1); }},
      {"button LED", [](TaskQueue &queue) { queue.emplace<SetLEDButtonStateTask>(client, 1, 1); }},
      {"toggle", [](TaskQueue &queue) { queue.emplace<SetLEDToggleIndicatorTask>(client, 1U, 1U); }},
      {"blackout", [](TaskQueue &queue) { queue.emplace<BlackoutScreenTask>(client, 1); }},
      {"intensity", [](TaskQueue &queue) { queue.emplace<SetTFTIntensityTask>(client, 1); }},
      {"line", [&](TaskQueue &queue) { queue.emplace<TextLineTask>(client, 0, 0, line, true); }},
      {"text", [&](TaskQueue &queue) { queue.emplace<SubTextLineTask>(client, 0, 0, 0, 32, line, 0U, 0U); }},
      {"picture", [&](TaskQueue &queue) { queue.emplace<DrawTFTImageTask>(client, 0, 0, 0, picture); }},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    TaskQueue queue;
    const auto fill_and_empty = [&] {
      for (int i = 0; i < 100; ++i)
        row.append(queue);
      while (queue.front())
        queue.removeFront();
    };
    fill_and_empty();
    fill_and_empty(); // takes one more: what is removed last comes back late
    const std::size_t before = test::allocations();
    for (int round = 0; round < 10; ++round)
      fill_and_empty();
    EXPECT_EQ(test::allocations() - before, 0U);
  }
}

TEST(TaskMemoryTest, the_queue_keeps_little_of_what_a_flood_took) {
  TaskQueue queue;
  const auto fill_and_empty = [&queue](int count) {
    const std::size_t before = test::allocations();
    for (int i = 0; i < count; ++i)
      queue.emplace<BlackoutScreenTask>(TaskOrigin::client, 1);
    while (queue.front())
      queue.removeFront();
    return test::allocations() - before;
  };
  EXPECT_EQ(fill_and_empty(10000), 10000U);
  EXPECT_EQ(fill_and_empty(10000), 10000U - 1024);
}

/// Counts the transfers, for who waits for them.
class CountingDevice : public panel::RegisterDevice {
public:
  CountingDevice() {
    ::sem_init(&_done, 0, 0);
    panel::use_register_device(this);
  }
  ~CountingDevice() override {
    panel::use_register_device(nullptr);
    ::sem_destroy(&_done);
  }

  int open(const char *) override { return 0; }
  int transfer(int, unsigned long, panel::TransferRecord &record, std::uint16_t *) override {
    ++(record.count == 1 ? single_words : blocks);
    block_words += record.count == 1 ? 0 : record.count;
    return ::sem_post(&_done);
  }

  void waitFor(int transfers) {
    for (int i = 0; i < transfers; ++i)
      while (::sem_wait(&_done) != 0) {
      }
  }

  // Of transfers, so far. To be read when the worker has nothing to do with the device.
  std::size_t single_words = 0;
  std::size_t blocks = 0;
  std::size_t block_words = 0;

private:
  sem_t _done{};
};

/// The facade leaves the font open until the process ends; here there are several facades.
struct LibraryEnd {
  ~LibraryEnd() { panel::panel_lib_done(); }
};

struct CommandRow {
  const char *name;
  std::function<void(FPGA &)> queue;
  std::size_t single_words; // transfers of one word that it makes
  std::size_t blocks;       // and of more, which have 128 x 16 pixels
};

TEST(TaskMemoryTest, commands_take_none_on_their_way_to_the_device) {
  constexpr int commands = 200;
  constexpr int rounds = 20;
  // A register of a screen takes three transfers, and opening a window for pixels eight.
  const CommandRow rows[] = {
      {"status LED", [](FPGA &fpga) { fpga.setLEDStatusIndicator(1, 1); }, 1, 0},
      {"white line", [](FPGA &fpga) { fpga.textLine(0, 2, "Ready", true); }, 8 + 6, 1},
      {"black line", [](FPGA &fpga) { fpga.textLine(0, 2, "Ready", false); }, 8 + 6 + 6, 1},
  };
  LogChannels::ofProcess(); // made when somebody first needs it
  for (const CommandRow &row : rows) {
    SCOPED_TRACE(row.name);
    const test::TestRoot root;
    root.writeLauncherConfiguration("[font]\nwidth=8\nheight=16\n");
    const LibraryEnd end;
    CountingDevice device;
    QueueMarks marks;
    marks.high_time = std::chrono::hours(1); // to tell of a pause takes memory
    FPGA fpga(root.paths(), marks);
    device.waitFor(12); // the blackout
    const auto queue = [&](int count) {
      for (int i = 0; i < count; ++i)
        row.queue(fpga);
    };
    const int transfers = static_cast<int>(row.single_words + row.blocks);
    {
      const test::BusyWorker busy(fpga);
      queue(300);
    }
    device.waitFor(300 * transfers);
    const std::size_t before = test::allocations();
    for (int round = 0; round < rounds; ++round) {
      queue(commands);
      device.waitFor(commands * transfers);
    }
    EXPECT_EQ(test::allocations() - before, 0U);

    const test::BusyWorker last(fpga); // all before it are done
    constexpr std::size_t all = 300 + commands * rounds;
    EXPECT_EQ(device.single_words - 11, all * row.single_words) << "without those of the blackout";
    EXPECT_EQ(device.blocks - 1, all * row.blocks);
    EXPECT_EQ(device.block_words - 128 * 128, all * row.blocks * 128 * 16);
  }
}

} // namespace
} // namespace buttondriver
