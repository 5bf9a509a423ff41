// SPDX-License-Identifier: Apache-2.0
#include "counts/run/counting.h"

#include "counts/run/client.h"
#include "protocol/frames.h"

#include <exception>
#include <stdexcept>

namespace buttondriver::counts {

namespace {

/// How often messages are sent before they are counted: until what the daemon learns of them, and the memory that it
/// keeps for them, stays as it is.
constexpr int rounds_before = 3;

QByteArray frames_of_a_round(const MessageKind &kind) {
  QByteArray frames;
  for (int i = 0; i < kind.at_once; ++i)
    frames += framed(kind.message(i));
  return frames;
}

/// Everything but the instructions, from the start of the daemon on.
Row totals(const PinnedState &state) {
  const auto calls = [&](Call call) { return static_cast<double>(state.calls[static_cast<std::size_t>(call)]); };
  Row row;
  row[Column::allocations] = calls(Call::allocation);
  row[Column::log_writes] = calls(Call::log_write);
  row[Column::transfers] = calls(Call::transfer);
  row[Column::sends] = calls(Call::send);
  row[Column::reads] = calls(Call::read);
  row[Column::polls] = calls(Call::poll);
  row[Column::futexes] = calls(Call::futex);
  row[Column::others] = calls(Call::other);
  return row;
}

Row count_messages(CountedDaemon &daemon, Client &client, const MessageKind &kind) {
  const QByteArray frames = frames_of_a_round(kind);
  const int answers = kind.answers * kind.at_once;
  // The first one alone: many of which the daemon does not know how long they take it may not take at once.
  client.exchange(framed(kind.message(0)), kind.answers);
  for (int i = 0; i < rounds_before; ++i)
    client.exchange(frames, answers);
  client.exchange(frames, answers);
  daemon.startCounting();
  const Row before = totals(daemon.state());
  for (int i = 0; i < kind.rounds; ++i)
    client.exchange(frames, answers);
  Row after = totals(daemon.state());
  after[Column::instructions] = daemon.takeInstructions();
  return row_of(kind.name, before, after, double(kind.at_once) * kind.rounds);
}

} // namespace

std::vector<Row> count_all(const std::string &program, const std::vector<MessageKind> &kinds) {
  CountedDaemon daemon(program);
  Client client(daemon);
  std::vector<Row> rows;
  for (const MessageKind &kind : kinds)
    try {
      rows.push_back(count_messages(daemon, client, kind));
    } catch (const std::exception &error) {
      throw std::runtime_error(std::string(kind.name) + ": " + error.what());
    }
  return rows;
}

} // namespace buttondriver::counts
