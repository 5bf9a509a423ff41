#pragma once

#include "tools/outcome.h"
#include "tools/panel_report.h"

#include <QByteArray>
#include <QImage>
#include <QNetworkAccessManager>
#include <QString>

namespace buttondriver::buttonctl {

/// A screen as the virtual panel has sent it.
struct ScreenPicture {
  QByteArray png; ///< the file
  QImage image;   ///< what is in it
};

/// Asks the virtual panel over HTTP what it shows. Every answer is about the moment at which all is done that the
/// daemon had accepted before the request.
///
/// `GET /screen/N.png`, N from 0 to 2, answers with a PNG of 128 x 128 pixels; `GET /state.json` with one object:
///
///     {"version": 1,
///      "button_leds": [0 or 1, 32 of them], "status_leds": [0 or 1, 32 of them], "toggles": [0 or 1, 2 of them],
///      "intensity": 0 to 63,
///      "blinking": [{"button": 5, "time": 500}, ...],
///      "text": [[{"line": 0, "text": "..."}, ...], 3 screens of them],
///      "counters": {"messages": n, "transfers": n, "refused": n, "queue": n, "clients": n}}
///
/// "time" is in milliseconds. The counters are not read here, and members may be added without a new version.
class PanelStateReader {
public:
  /// `url` is "http://HOST:PORT"; no answer may take longer than `timeout_ms`.
  PanelStateReader(QString url, int timeout_ms);

  /// Each call blocks, while the event loop of the thread runs. A failure names the address.
  Outcome<PanelReport> state();
  Outcome<ScreenPicture> screen(int screen);

private:
  Outcome<QByteArray> get(const QString &path);

  const QString _url;
  const int _timeout_ms;
  QNetworkAccessManager _network;
};

} // namespace buttondriver::buttonctl
