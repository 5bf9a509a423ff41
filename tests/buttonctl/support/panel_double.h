// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

namespace buttondriver::test {

/// A web server on a port that the system gives, in place of the virtual panel's.
class PanelDouble {
public:
  PanelDouble();
  PanelDouble(const PanelDouble &) = delete;
  PanelDouble &operator=(const PanelDouble &) = delete;

  QString url() const;
  /// All paths asked for so far.
  const QList<QByteArray> &asked() const { return _asked; }

  /// What `path` is answered with; 404 for paths of which nobody has told it.
  void answer(const QByteArray &path, const QByteArray &body);
  /// `body` is called for each request.
  void answer(const QByteArray &path, std::function<QByteArray()> body) { _bodies[path] = std::move(body); }
  /// Requests are taken but not answered from now on.
  void fall_silent() { _is_silent = true; }

private:
  void accept();
  void take(QTcpSocket &socket);

  QHash<QByteArray, std::function<QByteArray()>> _bodies;
  QHash<QTcpSocket *, QByteArray> _unfinished;
  QList<QByteArray> _asked;
  bool _is_silent = false;
  QTcpServer _server; ///< the last, since its sockets use what stands above
};

/// The text of /state.json with LEDs and toggles as lists of true and false, and the rest as JSON.
struct PanelStateText {
  int lit_button = -1; ///< -1: none
  int lit_status = -1;
  int lit_toggle = -1;
  int intensity = 63;
  QByteArray blinking = "[]";
  QByteArray screens = R"([{"text":[],"drawn":[]},{"text":[],"drawn":[]},{"text":[],"drawn":[]}])";

  QByteArray json() const;
};

} // namespace buttondriver::test
