// SPDX-License-Identifier: Apache-2.0
#include "http/server/request_rounds.h"

#include "http_server_fixture.h"

namespace buttondriver {
namespace {

using test::process_events_until;

class RequestRoundsTest : public HttpServerTest {
protected:
  void SetUp() override { serve(); }

  /// A request that has arrived; its client is the last of `clients`.
  std::unique_ptr<QTcpSocket> asked() {
    const std::size_t before = clients.size();
    auto socket = sent(get_x);
    EXPECT_TRUE(process_events_until([&] { return clients.size() > before; }));
    return socket;
  }
  /// Ends a connection, and waits until the server knows.
  void leave(std::unique_ptr<QTcpSocket> socket, std::size_t client) {
    socket->abort();
    EXPECT_TRUE(process_events_until([&] { return !clients[client].isThere(); }));
  }
  static std::string answer_to(const std::unique_ptr<QTcpSocket> &socket) {
    const QByteArray all = received(*socket);
    return all.mid(all.indexOf("\r\n\r\n") + 4).toStdString();
  }

  struct Round {
    RequestRounds::IsWanted is_wanted;
    RequestRounds::Answer answer;
  };
  std::vector<Round> started;
  RequestRounds rounds{[this](const auto &is_wanted, const auto &answer) { started.push_back({is_wanted, answer}); }};
};

TEST_F(RequestRoundsTest, what_comes_while_a_round_goes_on_is_answered_by_the_next_one_together) {
  const auto first = asked();
  const auto second = asked();
  const auto third = asked();
  for (const HttpClient &client : clients)
    rounds.add(client);
  ASSERT_EQ(started.size(), 1U);
  EXPECT_EQ(rounds.waiting(), 2U);
  started[0].answer(HttpAnswer::fault(404, "one"));
  EXPECT_EQ(answer_to(first), "one\n");
  ASSERT_EQ(started.size(), 2U);
  EXPECT_EQ(rounds.waiting(), 0U);
  EXPECT_EQ(second->bytesAvailable(), 0);
  started[1].answer(HttpAnswer::fault(404, "two"));
  EXPECT_EQ(answer_to(second), "two\n");
  EXPECT_EQ(answer_to(third), "two\n");
  EXPECT_EQ(started.size(), 2U);
}

TEST_F(RequestRoundsTest, a_round_can_end_at_once) {
  RequestRounds at_once{[](const auto &, const auto &answer) { answer(HttpAnswer::fault(404, "now")); }};
  const auto first = asked();
  const auto second = asked();
  for (const HttpClient &client : clients)
    at_once.add(client);
  EXPECT_EQ(answer_to(first), "now\n");
  EXPECT_EQ(answer_to(second), "now\n");
}

TEST_F(RequestRoundsTest, a_round_is_wanted_while_one_of_its_clients_is_there) {
  const auto first = asked();
  rounds.add(clients[0]);
  auto second = asked();
  auto third = asked();
  rounds.add(clients[1]);
  rounds.add(clients[2]);
  started[0].answer({});
  ASSERT_EQ(started.size(), 2U);
  EXPECT_TRUE(started[1].is_wanted());
  leave(std::move(second), 1);
  EXPECT_TRUE(started[1].is_wanted());
  leave(std::move(third), 2);
  EXPECT_FALSE(started[1].is_wanted());
}

TEST_F(RequestRoundsTest, clients_that_have_gone_do_not_wait) {
  const auto first = asked();
  rounds.add(clients[0]);
  for (std::size_t i = 1; i <= 20; ++i) {
    auto next = asked();
    rounds.add(clients[i]);
    EXPECT_EQ(rounds.waiting(), 1U);
    leave(std::move(next), i);
  }
  EXPECT_EQ(started.size(), 1U);
}

} // namespace
} // namespace buttondriver
