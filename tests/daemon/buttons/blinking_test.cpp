// SPDX-License-Identifier: Apache-2.0
// Blinking keeps its beat, whatever waits for the worker. Ticks are made by hand.

#include "support/device/busy_worker.h"
#include "support/device/dispatcher_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace buttondriver {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// Remembers the values it got, each as "button 3: 1".
class RememberingButton : public IButton {
public:
  RememberingButton(std::int32_t id, std::vector<std::string> *calls) : _id(id), _calls(calls) {}

  void setState(std::int32_t state) override {
    _calls->push_back("button " + std::to_string(_id) + ": " + std::to_string(state));
  }
  std::int32_t id() const override { return _id; }
  bool setImage(const void *) override { return false; }
  void refresh() override {}

private:
  std::int32_t _id;
  std::vector<std::string> *_calls;
};

class BlinkingTest : public test::DispatcherFixture {
protected:
  void ticks(int count) {
    for (int i = 0; i < count; ++i)
      dispatcher->update_timer();
  }

  /// Puts buttons of the test's own in place of the panel's.
  void useOwnButtons() { dispatcher->setButtons({{3, &third}, {4, &fourth}}); }

  /// What each of so many ticks sent, one text a tick.
  std::vector<std::string> sentBy(int count) {
    std::vector<std::string> sent;
    for (int i = 0; i < count; ++i) {
      calls.clear();
      dispatcher->update_timer();
      std::sort(calls.begin(), calls.end());
      sent.emplace_back();
      for (const std::string &call : calls)
        sent.back() += call + "; ";
    }
    return sent;
  }

  std::vector<std::string> calls;
  RememberingButton third{3, &calls};
  RememberingButton fourth{4, &calls};
};

TEST_F(BlinkingTest, each_tick_counts_and_each_change_is_one_call_while_the_worker_is_busy) {
  {
    const test::BusyWorker busy(*fpga);
    dispatcher->setLEDState(3, -1, 1000);
    ticks(151);
  }
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 4300", "w 0900 1 6300", "w 0900 1 4300", "w 0900 1 6300"));
}

TEST_F(BlinkingTest, buttons_of_one_time_change_at_one_tick_while_the_worker_is_busy) {
  const test::BusyWorker busy(*fpga);
  dispatcher->setLEDState(-1, -1, 200);
  for (int tick = 0; tick < 60; ++tick) {
    const std::size_t before = fpga->queueLength();
    dispatcher->update_timer();
    EXPECT_EQ(fpga->queueLength() - before, tick % 10 == 0 ? 24U : 0U) << tick;
  }
}

TEST_F(BlinkingTest, any_button_blinks_with_a_facade_or_without_one) {
  for (FPGA *facade : {&*fpga, static_cast<FPGA *>(nullptr)}) {
    calls.clear();
    dispatcher.emplace(root.paths());
    dispatcher->setFPGA(facade);
    useOwnButtons();
    dispatcher->setLEDState(3, -1, 40);
    ticks(5);
    EXPECT_THAT(calls, ElementsAre("button 3: 0", "button 3: 1", "button 3: 0"));
    dispatcher->setLEDState(3, 1, 0);
    ticks(1);
    EXPECT_FALSE(dispatcher->isBlinking());
  }
}

TEST_F(BlinkingTest, ticks_are_left_out_for_all_buttons_alike_while_the_queue_is_full) {
  useOwnButtons();
  const auto start = [this] {
    dispatcher->setLEDState(3, -1, 40);
    dispatcher->setLEDState(4, -1, 60);
  };
  start();
  const std::vector<std::string> undisturbed = sentBy(12);
  for (int ticks_before = 0; ticks_before < 12; ++ticks_before) {
    start();
    std::vector<std::string> sent = sentBy(ticks_before);
    {
      const test::BusyWorker busy(*fpga);
      while (fpga->queueLength() <= QueueMarks().full_tasks)
        fpga->setLEDStatusIndicator(0, 1);
      EXPECT_THAT(sentBy(5), testing::Each(IsEmpty())) << ticks_before;
    }
    settle();
    for (const std::string &text : sentBy(12 - ticks_before))
      sent.push_back(text);
    EXPECT_EQ(sent, undisturbed) << ticks_before;
  }
}

TEST_F(BlinkingTest, goes_on_with_all_that_clients_alone_can_queue) {
  const test::BusyWorker busy(*fpga);
  // Past the mark at which they pause they bring one turn: 64 messages for all 24 buttons.
  while (fpga->queueLength() <= QueueMarks().high_tasks + std::size_t{64 * 24})
    fpga->setLEDStatusIndicator(0, 1);
  useOwnButtons();
  dispatcher->setLEDState(3, -1, 20);
  ticks(3);
  EXPECT_THAT(calls, SizeIs(3));
}

TEST_F(BlinkingTest, that_the_device_cannot_follow_makes_no_client_pause) {
  int times_high = 0;
  QObject::connect(&*fpga, &FPGA::backlogHigh, [&] { ++times_high; });
  const test::BusyWorker busy(*fpga);
  dispatcher->setLEDState(-1, -1, 20);
  while (!fpga->isFull())
    ticks(1);
  const std::size_t queued = fpga->queueLength();
  ticks(100);
  EXPECT_EQ(fpga->queueLength(), queued);
  EXPECT_EQ((queued - 1) % 24, 0U) << "a tick is for all buttons or for none";
  EXPECT_EQ(times_high, 0);
  // By number at the latest; the task that keeps the worker busy counts too.
  for (std::size_t i = 1; i <= QueueMarks().high_tasks; ++i)
    fpga->setLEDStatusIndicator(0, 1);
  EXPECT_EQ(times_high, 1);
}

} // namespace
} // namespace buttondriver
