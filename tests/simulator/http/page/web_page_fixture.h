// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/web_page.h"
#include "simulator/simulation/simulation.h"
#include "support/captured_log.h"
#include "support/test_root.h"

#include <QByteArray>
#include <QJsonObject>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace buttondriver::simulator {

/// An answer as it came over the wire.
struct Reply {
  int status = 0; ///< 0: the connection ended without an answer
  QByteArray head;
  QByteArray body;

  /// Const, so that [] has the same type with each version of Qt.
  const QJsonObject json() const;
};

/// A virtual panel and its page on ports of their own, in this process.
class WebPageFixture : public testing::Test {
protected:
  WebPageFixture() : WebPageFixture(QString()) {}
  /// With a path: a panel without a daemon, which is driven through a socket there.
  explicit WebPageFixture(const QString &device);
  ~WebPageFixture() override;

  quint16 port() const;
  /// "127.0.0.1:" and the port.
  QByteArray host() const;

  /// Sends `request` as it stands and waits for the end of the connection.
  Reply ask(const QByteArray &request) const;
  Reply get(const QByteArray &path) const;
  Reply post(const QByteArray &path) const;

  /// A connection on which requests can be sent bit by bit.
  std::unique_ptr<QTcpSocket> connected() const;

  /// Sends messages, given with their lengths in hexadecimal, as a client of the daemon, and waits until they have been
  /// accepted.
  void sendMessages(const QByteArray &hex);

  test::TestRoot root;
  test::CapturedLog log;
  test::CapturedOutput output;
  std::optional<Simulation> simulation;
  std::optional<WebPage> web_page;

private:
  QTcpSocket _client;
};

/// What came on `socket` up to the end of the connection.
Reply reply_from(QTcpSocket &socket);

} // namespace buttondriver::simulator
