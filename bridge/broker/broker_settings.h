// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

namespace buttondriver::bridge {

/// How a broker is reached.
struct BrokerSettings {
  QString host = QStringLiteral("127.0.0.1");
  quint16 port = 1883;
  bool is_mqtt_5 = true; ///< else 3.1.1
  QByteArray client_id;  ///< unique at the broker
  QString user;          ///< empty: nobody in particular
  QByteArray password;
  bool has_tls = false;
  QString ca_file;   ///< empty: the system's authorities
  QString cert_file; ///< a certificate of our own; empty: none
  QString key_file;
  int keep_alive_seconds = 30;
  QByteArray will_topic; ///< what the broker publishes, retained, when the connection breaks; empty: nothing
  QByteArray will_payload;

  bool operator==(const BrokerSettings &other) const;
};

} // namespace buttondriver::bridge
