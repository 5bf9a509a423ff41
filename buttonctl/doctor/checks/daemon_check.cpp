// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/daemon_check.h"

#include "buttonctl/session/connection.h"
#include "buttonctl/session/framed_ping.h"

namespace buttondriver::buttonctl {

namespace {

const QString check_name = QStringLiteral("daemon");
const QString show_journal = QStringLiteral("journalctl -u buttondriver -n 20");
const QString elsewhere = QStringLiteral("on that machine: ");

/// What to do where nothing listens.
QString start_command(const Endpoint &endpoint, const ServiceFacts &service) {
  if (service.unit.isEmpty())
    return QStringLiteral("buttondriver map '' %1 &").arg(endpoint.port);
  if (service.port != 0 && service.port != endpoint.port)
    return QStringLiteral("buttonctl --port %1 doctor    # the port that the service has").arg(service.port);
  if (service.is_running)
    return show_journal + QStringLiteral("    # the service runs, and has no server or another port");
  return QStringLiteral("systemctl %1 buttondriver    # its journal: %2")
      .arg(service.is_enabled ? QLatin1String("start") : QLatin1String("enable --now"), show_journal);
}

/// Asks it; `refused` is what to do where nothing listens, `silent` where nothing comes back, `before` stands before a
/// command for its machine.
Finding ask(const Endpoint &endpoint, const QString &refused, const QString &silent, const QString &before) {
  Connection connection(endpoint);
  if (const auto opened = connection.open(); !opened)
    switch (connection.error()) {
    case QAbstractSocket::ConnectionRefusedError:
      return {check_name, QStringLiteral("nothing listens on %1").arg(connection.peer()), refused};
    case QAbstractSocket::HostNotFoundError:
      return {check_name, opened.failure().text, QStringLiteral("getent hosts %1").arg(shell_word(endpoint.host))};
    default:
      return {check_name, opened.failure().text, silent};
    }
  const Outcome<double> round_trip = connection.ping(framed_ping());
  if (!round_trip)
    return {check_name,
            QStringLiteral("something listens on %1 but it is not the daemon, or it hangs: %2")
                .arg(connection.peer(), round_trip.failure().text),
            before + QStringLiteral("ss -ltnp | grep buttondriver    # its port is the one for --port")};
  return {check_name,
          QStringLiteral("%1 answers in %2 ms").arg(connection.peer(), QString::number(*round_trip, 'f', 3)),
          {}};
}

QString ping_command(const Endpoint &endpoint) { return QStringLiteral("ping -c 3 %1").arg(shell_word(endpoint.host)); }

} // namespace

Finding check_daemon(const Endpoint &endpoint, const ServiceFacts &service) {
  return ask(endpoint, start_command(endpoint, service), ping_command(endpoint), {});
}

Finding check_virtual_daemon(const Endpoint &endpoint, const QString &root) {
  const QString option = root.isEmpty() ? QString() : QStringLiteral("--root %1 ").arg(shell_word(root));
  return ask(endpoint, QStringLiteral("buttondriver-sim %1map '' %2 &").arg(option, QString::number(endpoint.port)),
             ping_command(endpoint), {});
}

Finding check_daemon_elsewhere(const Endpoint &endpoint) {
  const QString silent = QStringLiteral("%1    # if it answers, the service there may let in nobody from here; %2%3");
  return ask(endpoint, elsewhere + QStringLiteral("systemctl start buttondriver; ") + show_journal,
             silent.arg(ping_command(endpoint), elsewhere, QStringLiteral("systemctl cat buttondriver")), elsewhere);
}

} // namespace buttondriver::buttonctl
