// SPDX-License-Identifier: Apache-2.0
#include "server/turns/fair_order.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <vector>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// Stands for a connection.
struct Member {
  char name;
};

class FairOrderTest : public testing::Test {
protected:
  /// So many turns; each costs its member what `costs` says, and the member joins again.
  std::vector<char> turns(int count) {
    std::vector<char> names;
    for (int i = 0; i < count; ++i) {
      Member *const member = order.next();
      names.push_back(member ? member->name : '-');
      if (!member)
        continue;
      order.join(member); // as a connection does that has more to deliver, before its turn is charged
      order.charge(member, costs[member]);
    }
    return names;
  }

  Member a{'a'};
  Member b{'b'};
  Member c{'c'};
  std::map<Member *, std::chrono::nanoseconds> costs{{&a, 10ms}, {&b, 10ms}, {&c, 10ms}};
  FairOrder<Member> order{10ms};
};

TEST_F(FairOrderTest, equal_costs_take_turns_in_the_order_in_which_they_joined) {
  for (Member *member : {&b, &a, &b, &c})
    order.join(member);
  EXPECT_EQ(order.size(), 3U);
  EXPECT_THAT(turns(7), ElementsAre('b', 'a', 'c', 'b', 'a', 'c', 'b'));
}

TEST_F(FairOrderTest, who_takes_twice_as_long_comes_half_as_often) {
  costs[&a] = 20ms;
  order.join(&a);
  order.join(&b);
  const std::vector<char> names = turns(300);
  EXPECT_EQ(std::count(names.begin(), names.end(), 'a'), 100);
  EXPECT_EQ(std::count(names.begin(), names.end(), 'b'), 200);
}

TEST_F(FairOrderTest, who_comes_after_a_while_is_next_and_has_saved_up_its_credit_alone) {
  order.join(&a);
  order.join(&b);
  turns(1000);
  order.join(&c);
  const std::vector<char> names = turns(30);
  EXPECT_EQ(names[0], 'c');
  const auto its_turns = std::count(names.begin(), names.end(), 'c');
  EXPECT_GE(its_turns, 10);
  EXPECT_LE(its_turns, 11);
}

TEST_F(FairOrderTest, who_wants_less_than_its_share_is_always_next) {
  std::vector<Member> floods(40);
  for (Member &member : floods)
    order.join(&member);
  for (int i = 1; i <= 2000; ++i) {
    const bool has_come = i % 50 == 0;
    if (has_come)
      order.join(&c);
    Member *const member = order.next();
    ASSERT_EQ(member == &c, has_come) << i;
    order.charge(member, 10ms);
    if (member != &c)
      order.join(member);
  }
}

TEST_F(FairOrderTest, turns_that_were_taken_elsewhere_count_and_are_no_debt_to_a_newcomer) {
  for (int i = 0; i < 1000; ++i)
    order.charge(&a, 10ms); // nobody else wanted anything
  order.join(&b);
  order.join(&a);
  const std::vector<char> names = turns(20);
  EXPECT_NEAR(static_cast<double>(std::count(names.begin(), names.end(), 'a')), 10, 1);
}

TEST_F(FairOrderTest, who_has_left_gets_no_turn_and_keeps_what_it_has_used) {
  order.join(&a);
  order.join(&b);
  EXPECT_THAT(turns(1), ElementsAre('a'));
  order.leave(&a);
  order.leave(&a);
  order.leave(&c);
  order.charge(&a, 40ms);
  EXPECT_THAT(turns(2), ElementsAre('b', 'b'));
  order.join(&a);
  EXPECT_THAT(turns(5), ElementsAre('b', 'b', 'b', 'a', 'b')) << "a has used 50 ms";
}

TEST_F(FairOrderTest, who_is_forgotten_has_used_nothing) {
  order.join(&a);
  order.join(&b);
  turns(1);
  order.charge(&a, 1h);
  order.forget(&a);
  EXPECT_THAT(turns(1), ElementsAre('b'));
  order.join(&a);
  EXPECT_THAT(turns(2), ElementsAre('a', 'b'));
}

TEST_F(FairOrderTest, with_nobody_there_nobody_is_next) {
  EXPECT_TRUE(order.isEmpty());
  EXPECT_EQ(order.next(), nullptr);
  order.join(&a);
  EXPECT_FALSE(order.isEmpty());
  EXPECT_EQ(order.next(), &a);
  EXPECT_EQ(order.next(), nullptr);
}

TEST_F(FairOrderTest, forty_that_always_want_something_each_wait_for_the_others_once) {
  std::vector<Member> members(40);
  for (Member &member : members)
    order.join(&member);
  for (int round = 0; round < 5; ++round) {
    std::map<Member *, int> served;
    for (std::size_t i = 0; i < members.size(); ++i) {
      Member *const member = order.next();
      order.charge(member, 10ms);
      order.join(member);
      ++served[member];
    }
    EXPECT_EQ(served.size(), members.size()) << round;
  }
}

} // namespace
} // namespace buttondriver
