// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/daemon_check.h"

#include "buttonctl/session/connection.h"
#include "buttonctl/session/framed_ping.h"

namespace buttondriver::buttonctl {

namespace {

Finding no_connection(const Connection &connection, const Endpoint &endpoint, const Failure &failure) {
  const QString name = QStringLiteral("daemon");
  switch (connection.error()) {
  case QAbstractSocket::ConnectionRefusedError:
    return {name, QStringLiteral("nothing listens on %1").arg(connection.peer()),
            QStringLiteral("buttondriver map '' %1 &").arg(endpoint.port)};
  case QAbstractSocket::HostNotFoundError:
    return {name, failure.text, QStringLiteral("getent hosts %1").arg(shell_word(endpoint.host))};
  default:
    return {name, failure.text, QStringLiteral("ping -c 3 %1").arg(shell_word(endpoint.host))};
  }
}

} // namespace

Finding check_daemon(const Endpoint &endpoint) {
  Connection connection(endpoint);
  if (const auto opened = connection.open(); !opened)
    return no_connection(connection, endpoint, opened.failure());
  const Outcome<double> round_trip = connection.ping(framed_ping());
  if (!round_trip)
    return {QStringLiteral("daemon"),
            QStringLiteral("something listens on %1 but it is not the daemon, or it hangs: %2")
                .arg(connection.peer(), round_trip.failure().text),
            QStringLiteral("ss -ltnp | grep buttondriver    # its port is the one for --port")};
  return {QStringLiteral("daemon"),
          QStringLiteral("%1 answers in %2 ms").arg(connection.peer(), QString::number(*round_trip, 'f', 3)),
          {}};
}

} // namespace buttondriver::buttonctl
