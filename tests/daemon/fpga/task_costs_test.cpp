// SPDX-License-Identifier: Apache-2.0
#include "fpga/queue/task_costs.h"

#include "fpga/tasks.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;

constexpr TaskKind with_one_transfer[] = {TaskKind::button_led, TaskKind::status_indicator, TaskKind::toggle_indicator,
                                          TaskKind::intensity, TaskKind::other};
constexpr TaskKind with_many_transfers[] = {TaskKind::image, TaskKind::text_line, TaskKind::sub_text_line,
                                            TaskKind::blackout};

TEST(TaskCostsTest, as_long_as_nothing_was_seen_everything_counts_as_slow) {
  const TaskCosts costs;
  for (const TaskKind kind : with_one_transfer)
    EXPECT_EQ(costs.of(kind, 0), 500us);
  for (const TaskKind kind : with_many_transfers)
    EXPECT_EQ(costs.of(kind, 5000), 10ms);
}

TEST(TaskCostsTest, what_was_never_seen_is_guessed_from_the_time_of_a_transfer) {
  TaskCosts costs;
  costs.learn(TaskKind::blackout, 0, 24ms, 12);
  for (const TaskKind kind : with_one_transfer)
    EXPECT_EQ(costs.of(kind, 0), 2ms);
  for (const TaskKind kind : with_many_transfers)
    EXPECT_EQ(costs.of(kind, 5000), 40ms);
  costs.learn(TaskKind::blackout, 0, 24ns, 12);
  EXPECT_EQ(costs.of(TaskKind::button_led, 0) / 1us, 1875) << "less of a transfer counts a sixteenth too";
}

TEST(TaskCostsTest, the_first_one_of_a_kind_and_size_tells_of_it_alone) {
  TaskCosts costs;
  costs.learn(TaskKind::image, 5000, 30ms);
  EXPECT_EQ(costs.of(TaskKind::image, 5000), 30ms);
  EXPECT_EQ(costs.of(TaskKind::image, 4096), 30ms) << "the same size class";
  EXPECT_EQ(costs.of(TaskKind::image, 8191), 30ms) << "the same size class";
  EXPECT_EQ(costs.of(TaskKind::image, 4095), 20 * 30ms) << "guessed";
  EXPECT_EQ(costs.of(TaskKind::image, 8192), 20 * 30ms);
  EXPECT_EQ(costs.of(TaskKind::sub_text_line, 5000), 20 * 30ms);
}

TEST(TaskCostsTest, the_smallest_and_the_largest_have_classes_too) {
  TaskCosts costs;
  costs.learn(TaskKind::other, 0, 1ms);
  costs.learn(TaskKind::other, 64, 2ms);
  costs.learn(TaskKind::other, std::size_t{16} << 20, 3ms);
  EXPECT_EQ(costs.of(TaskKind::other, 63), 1ms);
  EXPECT_EQ(costs.of(TaskKind::other, 127), 2ms);
  EXPECT_EQ(costs.of(TaskKind::other, std::size_t{1} << 20), 3ms);
  EXPECT_NE(costs.of(TaskKind::text_line, 0), 1ms);
}

TEST(TaskCostsTest, believes_in_more_soon_and_in_less_late) {
  struct Row {
    TaskCosts::Time known;
    TaskCosts::Time seen;
    TaskCosts::Time believed;
  };
  const Row rows[] = {
      {8ms, 12ms, 9ms},     {8ms, 8ms, 8ms},     {16ms, 0ms, 15ms},
      {1ms, 0ns, 937501ns}, {20ms, 10s, 1015ms}, // no task counts for more than 4 s
  };
  for (const Row &row : rows) {
    TaskCosts costs;
    costs.learn(TaskKind::blackout, 0, row.known);
    costs.learn(TaskKind::blackout, 0, row.seen);
    EXPECT_NEAR(static_cast<double>(costs.of(TaskKind::blackout, 0).count()), static_cast<double>(row.believed.count()),
                2);
  }
}

TEST(TaskCostsTest, nothing_is_cheaper_than_the_least) {
  TaskCosts costs;
  costs.learn(TaskKind::button_led, 0, 0ns);
  EXPECT_EQ(costs.of(TaskKind::button_led, 0), TaskCosts::least);
  costs.learn(TaskKind::status_indicator, 0, -1ns);
  EXPECT_EQ(costs.of(TaskKind::status_indicator, 0), TaskCosts::least);
}

TEST(TaskKindTest, each_task_tells_its_own) {
  const auto kind_of = [](const FPGATask &task) { return task.kind(); };
  EXPECT_EQ(kind_of(TextLineTask(0, 0, "", true)), TaskKind::text_line);
  EXPECT_EQ(kind_of(SubTextLineTask(0, 0, 0, 0, "", 0, 0)), TaskKind::sub_text_line);
  EXPECT_EQ(kind_of(SetLEDButtonStateTask(0, 0)), TaskKind::button_led);
  EXPECT_EQ(kind_of(SetLEDStatusIndicatorTask(0, 0)), TaskKind::status_indicator);
  EXPECT_EQ(kind_of(SetLEDToggleIndicatorTask(0, 0)), TaskKind::toggle_indicator);
  EXPECT_EQ(kind_of(BlackoutScreenTask(0)), TaskKind::blackout);
  EXPECT_EQ(kind_of(DrawTFTImageTask(0, 0, 0, SharedBytes({}, 0))), TaskKind::image);
  EXPECT_EQ(kind_of(SetTFTIntensityTask(0)), TaskKind::intensity);
}

} // namespace
} // namespace buttondriver
