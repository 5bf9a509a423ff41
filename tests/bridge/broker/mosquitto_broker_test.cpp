// SPDX-License-Identifier: Apache-2.0
#include "support/mosquitto/mosquitto_broker.h"
#include "support/mosquitto/test_certificates.h"

#include <QTcpSocket>

#include <gtest/gtest.h>

using buttondriver::test::MosquittoBroker;
using buttondriver::test::TestCertificates;

namespace {

bool takes_connections(quint16 port) {
  QTcpSocket socket;
  socket.connectToHost(QStringLiteral("127.0.0.1"), port);
  return socket.waitForConnected(60'000);
}

TEST(MosquittoBrokerTest, takes_connections_while_it_runs_and_comes_back_on_its_port) {
  MosquittoBroker broker;
  const quint16 port = broker.port();
  EXPECT_TRUE(takes_connections(port));
  for (const int signal : {SIGTERM, SIGKILL}) {
    SCOPED_TRACE(signal);
    broker.end(signal);
    EXPECT_FALSE(broker.isRunning());
    EXPECT_FALSE(takes_connections(port));
    EXPECT_TRUE(broker.start());
    EXPECT_EQ(broker.port(), port);
    EXPECT_TRUE(takes_connections(port));
  }
}

TEST(MosquittoBrokerTest, runs_beside_others) {
  const MosquittoBroker first;
  const MosquittoBroker second;
  EXPECT_NE(first.port(), second.port());
  EXPECT_TRUE(takes_connections(first.port()));
  EXPECT_TRUE(takes_connections(second.port()));
}

TEST(MosquittoBrokerTest, takes_every_option) {
  const TestCertificates certificates;
  const TestCertificates::Files files = certificates.issue(QStringLiteral("127.0.0.1"));
  MosquittoBroker::Options options;
  options.has_persistence = true;
  options.users = {{"anna", "secret"}, {"bert", "hidden"}};
  options.access_list = "user anna\ntopic readwrite #\n";
  options.certificate = files.certificate;
  options.key = files.key;
  options.client_authority = certificates.authority();
  options.more_lines = "max_queued_messages 7\n";
  options.lines_of_listener = "max_connections 5\n";
  const MosquittoBroker broker(options);
  EXPECT_TRUE(takes_connections(broker.port()));
}

} // namespace
