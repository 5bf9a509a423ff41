// SPDX-License-Identifier: Apache-2.0
#include "server/frames/large_frame_budget.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;

constexpr qint64 mib = 1024 * 1024;

class LargeFrameBudgetTest : public testing::Test {
protected:
  std::unique_ptr<LargeFrameBudget::Share> makeShare() {
    return std::make_unique<LargeFrameBudget::Share>(&budget, [this] { ++lost; });
  }

  std::chrono::steady_clock::time_point now{};
  int lost = 0;
  /// 3 MiB for all, and the room for one frame.
  LargeFrameBudget budget{limits::largest_frame + 3 * mib, [this] { return now; }};
};

TEST_F(LargeFrameBudgetTest, what_is_taken_comes_back) {
  auto share = makeShare();
  EXPECT_TRUE(share->grow(mib));
  EXPECT_TRUE(share->grow(2 * mib));
  EXPECT_EQ(share->size(), 3 * mib);
  EXPECT_EQ(budget.free(), 0);
  EXPECT_TRUE(share->grow(mib)) << "of the kept room";
  EXPECT_FALSE(budget.hasRoomForOne());
  share->release();
  EXPECT_EQ(share->size(), 0);
  EXPECT_EQ(budget.free(), 3 * mib);
  EXPECT_TRUE(budget.hasRoomForOne());
  share->release();
  EXPECT_EQ(budget.free(), 3 * mib);
  EXPECT_TRUE(share->grow(2 * mib));
  share.reset();
  EXPECT_EQ(budget.free(), 3 * mib);
}

TEST_F(LargeFrameBudgetTest, frames_that_grow_at_the_same_time_all_come_to_their_end) {
  std::vector<std::unique_ptr<LargeFrameBudget::Share>> shares;
  for (int i = 0; i < 20; ++i)
    shares.push_back(makeShare());
  qint64 held = 0;
  std::size_t rounds = 0;
  while (!shares.empty() && ++rounds < 10'000) {
    for (std::size_t i = 0; i < shares.size(); ++i) {
      held += shares[i]->grow(mib / 4) ? mib / 4 : 0;
      EXPECT_LE(held, limits::largest_frame + 3 * mib);
      if (shares[i]->size() < limits::largest_frame)
        continue;
      held -= shares[i]->size();
      shares.erase(shares.begin() + static_cast<std::ptrdiff_t>(i--));
    }
  }
  EXPECT_TRUE(shares.empty());
  EXPECT_EQ(lost, 0);
  EXPECT_EQ(budget.free(), 3 * mib);
}

TEST_F(LargeFrameBudgetTest, the_kept_room_goes_on_when_its_share_dallies_and_another_one_wants_it) {
  auto first = makeShare();
  auto second = makeShare();
  ASSERT_TRUE(first->grow(3 * mib));
  ASSERT_TRUE(first->grow(mib));
  now += 9s;
  ASSERT_TRUE(first->grow(mib));
  now += 9s;
  EXPECT_FALSE(second->grow(mib));
  EXPECT_EQ(lost, 0);
  now += 1s;
  EXPECT_TRUE(second->grow(mib)) << "ten seconds after the last growth";
  EXPECT_EQ(lost, 1);
  EXPECT_EQ(first->size(), 0);
  EXPECT_TRUE(first->grow(3 * mib)) << "what it held is free";
  EXPECT_FALSE(first->grow(1));
  now += 1h;
  EXPECT_TRUE(second->grow(mib)) << "who has the kept room goes on, however late";
  EXPECT_EQ(lost, 1);
}

} // namespace
} // namespace buttondriver
