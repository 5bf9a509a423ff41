// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/panel/panel_feed.h"
#include "buttonctl/panel/panel_report.h"
#include "outcome/outcome.h"
#include "pictures/picture.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QString>

class QNetworkReply;

namespace buttondriver::buttonctl {

/// A screen, or the whole panel, as the virtual panel has sent it.
struct ScreenPicture {
  QByteArray png;  ///< the file
  Picture picture; ///< what is in it
};

/// Asks the virtual panel over HTTP what it shows. Every answer is about the moment at which all is done that the
/// daemon had accepted before the request.
///
/// `GET /screen/N.png`, N from 0 to 2, answers with a PNG of 128 x 128 pixels; `GET /panel.png` with one of the panel;
/// `GET /state.json` with one object:
///
///     {"version": 1,
///      "button_leds": [32 times true or false], "status_leds": [32 of them], "toggles": [2 of them],
///      "intensity": 0 to 63,
///      "blinking": [{"button": 5, "time": 500}, ...],
///      "screens": [{"text": ["line 0", "line 1", ...], "drawn": ["line 0", "line 1", ...]}, 3 of them],
///      "font": {"fault": null}}
///
/// "time" is in milliseconds. "text" is as it was sent, "drawn" as it stands on the screen; where that cannot be read,
/// it is null, and "fault" says why. A line that is not there is "". When another program than the panel's own daemon
/// drives the panel, "blinking" and "screens" are null, because nobody knows them. Other members are not read here, and
/// may be added without a new version. docs/simulator-http.md describes all of it.
class PanelStateReader {
public:
  /// `url` is "http://HOST:PORT"; no answer may take longer than `timeout_ms`.
  PanelStateReader(QString url, int timeout_ms);

  /// Each call blocks, while the event loop of the thread runs. A failure names the address.
  Outcome<PanelReport> state();
  /// /state.json as it came.
  Outcome<QByteArray> stateJson();
  /// What `json`, an earlier answer, says. Asks nothing.
  Outcome<PanelReport> reportIn(const QByteArray &json) const;
  Outcome<ScreenPicture> screen(int screen);
  /// The whole panel with keys and lamps, larger than its screens.
  Outcome<ScreenPicture> wholePanel();
  /// What came after number `since`, 0 for all that the panel still knows.
  Outcome<PanelFeed> feed(PanelFeed::Kind kind, qint64 since);
  /// Puts the panel back as it was after its start; it is when this returns. Fails when another program drives it.
  Outcome<Done> reset();

private:
  Outcome<ScreenPicture> picture(const QString &path);
  Outcome<QByteArray> get(const QString &path);
  QNetworkRequest requestFor(const QString &path) const;
  /// The body of the answer to `reply`, which is for `path`; a failure when its status is another.
  Outcome<QByteArray> answer(QNetworkReply &reply, const QString &path, int wanted_status);

  const QString _url;
  const int _timeout_ms;
  QNetworkAccessManager _network;
};

} // namespace buttondriver::buttonctl
