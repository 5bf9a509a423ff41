// SPDX-License-Identifier: Apache-2.0
#include "fpga/fpga.h"

#include "counted_allocations.h"
#include "logging/channels/log_channels.h"
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
  int transfer(int, unsigned long, panel::TransferRecord &, std::uint16_t *) override { return ::sem_post(&_done); }

  void waitFor(int transfers) {
    for (int i = 0; i < transfers; ++i)
      while (::sem_wait(&_done) != 0) {
      }
  }

private:
  sem_t _done{};
};

TEST(TaskMemoryTest, led_commands_take_none_on_their_way_to_the_device) {
  LogChannels::ofProcess(); // made when somebody first needs it
  const test::TestRoot root;
  CountingDevice device;
  QueueMarks marks;
  marks.high_time = std::chrono::hours(1); // to tell of a pause takes memory
  FPGA fpga(root.paths(), marks);
  const auto queue = [&fpga](int count) {
    for (int i = 0; i < count; ++i)
      fpga.setLEDStatusIndicator(1, 1);
  };
  device.waitFor(12); // the blackout
  {
    const test::BusyWorker busy(fpga);
    queue(300);
  }
  device.waitFor(300);
  const std::size_t before = test::allocations();
  for (int round = 0; round < 20; ++round) {
    queue(200);
    device.waitFor(200);
  }
  EXPECT_EQ(test::allocations() - before, 0U);
}

} // namespace
} // namespace buttondriver
