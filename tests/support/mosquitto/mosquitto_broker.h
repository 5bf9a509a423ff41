// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QtGlobal>

#include <csignal>
#include <memory>

namespace buttondriver::test {

/// A real broker, Debian's mosquitto, that runs beside the test: on 127.0.0.1, with a configuration and a folder of its
/// own. It is ended, at the latest, when this object goes. Whoever may have one running on this machine is not met: the
/// port is one that the system hands out, and is held for as long as this object lives. So the broker can be ended and
/// started again on it, and while it is down connections are refused.
class MosquittoBroker {
public:
  struct Options {
    bool has_persistence = false;       ///< keeps retained messages over an end by SIGTERM
    QMap<QByteArray, QByteArray> users; ///< names and passwords; none: everybody may come
    QByteArray access_list;             ///< lines of an acl_file; empty: everybody may do everything
    QString certificate;                ///< with `key`: TLS and nothing else
    QString key;
    QString client_authority;     ///< clients have to show a certificate of this authority
    QByteArray more_lines;        ///< of its configuration
    QByteArray lines_of_listener; ///< those that belong to the listener, such as max_qos
  };

  /// Started; a test failure if that does not work.
  MosquittoBroker();
  explicit MosquittoBroker(Options options);
  ~MosquittoBroker();
  MosquittoBroker(const MosquittoBroker &) = delete;
  MosquittoBroker &operator=(const MosquittoBroker &) = delete;

  quint16 port() const { return _port; }

  /// Returns when clients can connect; false if that does not come true, with what the broker said as a test failure.
  bool start();
  /// Ends it and waits for that: with SIGTERM in good order, with SIGKILL as a crash.
  void end(int signal = SIGTERM);
  /// Stops it from doing anything, or lets it go on: its connections stay as they are.
  void freeze();
  void thaw();
  bool isRunning() const { return _process && _process->state() != QProcess::NotRunning; }

  /// Whatever it logged since its last start.
  QByteArray log();

private:
  void writeConfiguration();
  bool waitForLog(const QByteArray &text);

  TemporaryFolder _folder;
  Options _options;
  OwnedDescriptor _held_port;
  quint16 _port = 0;
  std::unique_ptr<QProcess> _process;
  QByteArray _log;
};

} // namespace buttondriver::test
