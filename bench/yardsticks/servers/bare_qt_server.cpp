// SPDX-License-Identifier: Apache-2.0
// The least that a server with Qt can be: it accepts connections, reads what comes and throws it away. It listens on a
// free port of this machine.

#include <QCoreApplication>
#include <QTcpServer>
#include <QTcpSocket>

int main(int argc, char **argv) {
  QCoreApplication application(argc, argv);
  QTcpServer server;
  QObject::connect(&server, &QTcpServer::newConnection, [&server] {
    while (QTcpSocket *connection = server.nextPendingConnection()) {
      QObject::connect(connection, &QTcpSocket::readyRead, [connection] { connection->readAll(); });
      QObject::connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
    }
  });
  if (!server.listen(QHostAddress::LocalHost))
    return 1;
  return QCoreApplication::exec();
}
