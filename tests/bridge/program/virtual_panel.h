// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/program.h"
#include "support/temporary_folder.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <string>

namespace buttondriver::bridge {

/// A virtual panel as a program, with buttonctl to look at it.
class VirtualPanel {
public:
  /// Started, on ports that the system hands out.
  VirtualPanel();

  quint16 port() const { return _port; }
  /// Ends it at once, as a panel ends that loses its power.
  void cutPower();
  /// Starts it again, on the port that it had.
  void startAgain();

  /// Waits until `expectation`, as in a scenario of buttonctl, is true; a test failure that tells what is shown instead
  /// when it does not come true.
  void expect(const QByteArray &expectation);
  /// The whole panel as a PNG file, with all that the daemon has read before. A test failure when there is none.
  QByteArray picture();

private:
  void start(quint16 port);
  QByteArray runTool(const QStringList &arguments);

  test::TemporaryFolder _folder;
  std::unique_ptr<test::Program> _program;
  quint16 _port = 0;
  quint16 _http_port = 0;
};

} // namespace buttondriver::bridge
