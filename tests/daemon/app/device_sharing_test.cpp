// SPDX-License-Identifier: Apache-2.0
// How connections share the device, with a pretended clock and pretended tasks: what the server's order and the queue's
// marks make of it together.

#include "fpga/queue/task_queue.h"
#include "server/limits.h"
#include "server/turns/fair_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace buttondriver {
namespace {

using namespace std::chrono_literals;
using Time = std::chrono::nanoseconds;

/// Sends messages of one kind: all of them at once, or one now and then.
struct Client {
  std::string name;
  TaskKind kind;
  Time cost;                 // what the device takes for one
  std::optional<Time> every; // none: always has more
  Time next_at{};
  std::deque<Time> waiting;    // when those that are not yet delivered were sent
  std::vector<Time> latencies; // from sent to carried out
  Time busy{};                 // of the device's time
};

/// What the device is asked for.
struct PretendedTask : FPGATask {
  PretendedTask(Client *sender, Time time) : client(sender), sent(time) {}
  void execute() override {}
  TaskKind kind() const override { return client->kind; }

  Client *client;
  Time sent;
};

/// The server and the worker, step by step. Time passes only while the device works or nothing is to do.
class Panel {
public:
  explicit Panel(std::vector<Client> clients) : _clients(std::move(clients)) {}

  void run(Time until) {
    while (_now < until) {
      send();
      serve();
      if (FPGATask *front = _queue.front())
        carryOut(*static_cast<PretendedTask *>(front));
      else
        waitForMore(until);
    }
  }

  const Client &client(std::size_t i) const { return _clients[i]; }
  int times_idle = 0; // while something waited
  Time most_queued{};

private:
  /// What the clients have sent by now.
  void send() {
    for (Client &client : _clients) {
      if (!client.every)
        while (client.waiting.size() < 200)
          client.waiting.push_back(_now);
      else
        for (; client.next_at <= _now; client.next_at += *client.every)
          client.waiting.push_back(client.next_at);
      if (!client.waiting.empty())
        _order.join(&client);
    }
  }

  void serve() {
    while (!_is_paused)
      if (Client *client = _order.next())
        takeTurn(*client);
      else
        return;
  }

  void takeTurn(Client &client) {
    Time cost{};
    for (std::size_t count = 0; count < limits::messages_per_turn && cost < limits::time_per_turn; ++count) {
      if (client.waiting.empty())
        break;
      cost += std::max(_queue.costs().of(client.kind, 0), limits::least_time_of_a_message);
      _is_paused = _queue.append(std::make_unique<PretendedTask>(&client, client.waiting.front())) || _is_paused;
      client.waiting.pop_front();
    }
    if (!client.waiting.empty())
      _order.join(&client);
    _order.charge(&client, cost);
    most_queued = std::max(most_queued, _queue.time());
  }

  void carryOut(PretendedTask &task) {
    Client &client = *task.client;
    client.latencies.push_back(_now - task.sent); // its first transfer
    _now += client.cost;
    client.busy += client.cost;
    _queue.costs().learn(client.kind, 0, client.cost,
                         static_cast<std::uint32_t>(std::max<std::int64_t>(client.cost / 2ms, 1)));
    const bool was_paused = _is_paused;
    _queue.removeFront();
    // Who could bring more hears only now that it may: until it does, the device has nothing to do.
    if (_queue.size() == 0 && was_paused && !_order.isEmpty())
      ++times_idle;
  }

  void waitForMore(Time until) {
    Time next = until;
    for (const Client &client : _clients)
      if (client.every)
        next = std::min(next, client.next_at);
    _now = std::max(next, _now + 1us);
  }

  std::vector<Client> _clients;
  bool _is_paused = false;
  TaskQueue _queue{QueueMarks(), [this] { _is_paused = false; }};
  FairOrder<Client> _order{limits::time_per_turn};
  Time _now{};
};

Client flood(std::string name, TaskKind kind, Time cost) { return {std::move(name), kind, cost, {}, {}, {}, {}, {}}; }

Client person(Time every) { return {"person", TaskKind::status_indicator, 2ms, every, 1s, {}, {}, {}}; }

Time median(std::vector<Time> times) {
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
  return times[times.size() / 2];
}

TEST(DeviceSharingTest, what_a_person_does_shows_at_once_whatever_others_send) {
  struct Row {
    const char *name;
    std::size_t floods;
    TaskKind kind;
    Time cost;
    Time worst;
    Time median;
  };
  const Row rows[] = {
      {"pictures from one", 1, TaskKind::image, 32ms, 130ms, 80ms},
      {"pictures from five", 5, TaskKind::image, 32ms, 130ms, 80ms},
      {"texts from forty", 40, TaskKind::text_line, 28ms, 130ms, 80ms},
      {"lights from five", 5, TaskKind::toggle_indicator, 2ms, 75ms, 60ms},
      {"pictures on a very slow device", 5, TaskKind::image, 200ms, 601ms, 401ms},
      {"pictures on a fast device", 5, TaskKind::image, 1ms, 75ms, 60ms},
  };
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    std::vector<Client> clients;
    for (std::size_t i = 0; i < row.floods; ++i)
      clients.push_back(flood("flood", row.kind, row.cost));
    clients.push_back(person(331ms)); // at any moment of what the others do
    Panel panel(std::move(clients));
    panel.run(60s);
    const std::vector<Time> &latencies = panel.client(row.floods).latencies;
    ASSERT_GT(latencies.size(), 170U);
    EXPECT_LE(*std::max_element(latencies.begin(), latencies.end()), row.worst);
    EXPECT_LE(median(latencies), row.median);
    EXPECT_EQ(panel.times_idle, 0);
  }
}

TEST(DeviceSharingTest, those_that_always_have_more_get_equal_times_of_the_device) {
  Panel panel({flood("pictures", TaskKind::image, 32ms), flood("texts", TaskKind::text_line, 20ms),
               flood("lights", TaskKind::status_indicator, 2ms)});
  panel.run(60s);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_NEAR(static_cast<double>(panel.client(i).busy / 1ms), 20'000, 200) << panel.client(i).name;
}

TEST(DeviceSharingTest, what_waits_for_the_device_is_worth_little_time) {
  for (const Time cost : {Time(20us), Time(1ms), Time(2ms), Time(30ms), Time(49ms)}) {
    Panel panel({flood("a", TaskKind::image, cost), flood("b", TaskKind::text_line, cost)});
    panel.run(20s);
    // The mark, and a turn beyond it.
    EXPECT_LE(panel.most_queued, QueueMarks().high_time + limits::time_per_turn + cost) << cost / 1us;
    EXPECT_EQ(panel.times_idle, 0) << cost / 1us;
    // Nothing is left undone for want of order.
    EXPECT_NEAR(static_cast<double>((panel.client(0).busy + panel.client(1).busy) / 1ms), 20'000, 100) << cost / 1us;
  }
}

TEST(DeviceSharingTest, nobody_starves_beside_many_who_come_now_and_then) {
  std::vector<Client> clients{flood("pictures", TaskKind::image, 32ms)};
  // Together they want nearly all of the device.
  for (int i = 0; i < 45; ++i)
    clients.push_back(person(100ms + i * 1us));
  Panel panel(std::move(clients));
  panel.run(60s);
  EXPECT_GT(panel.client(0).latencies.size(), 60U) << "at least the forty-sixth part, 1.3 s";
  for (std::size_t i = 1; i <= 45; ++i)
    EXPECT_GT(panel.client(i).latencies.size(), 560U) << i;
}

} // namespace
} // namespace buttondriver
