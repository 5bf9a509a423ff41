// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/panel/panel_state_reader.h"

#include "pictures/picture_file.h"

#include <QEventLoop>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

#include <memory>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

constexpr int http_ok = 200;
constexpr int http_no_content = 204;
constexpr int http_conflict = 409;
const QString state_path = QStringLiteral("/state.json");

} // namespace

PanelStateReader::PanelStateReader(QString url, int timeout_ms) : _url(std::move(url)), _timeout_ms(timeout_ms) {
  // The panel is near; a proxy meant for the web has no part in this.
  _network.setProxy(QNetworkProxy::NoProxy);
}

Outcome<QByteArray> PanelStateReader::stateJson() { return get(state_path); }

Outcome<PanelReport> PanelStateReader::state() {
  const Outcome<QByteArray> json = stateJson();
  if (!json)
    return json.failure();
  return reportIn(*json);
}

Outcome<PanelReport> PanelStateReader::reportIn(const QByteArray &json) const {
  Outcome<PanelReport> report = parse_panel_report(json);
  if (!report)
    return Failure{QStringLiteral("cannot read %1%2: %3").arg(_url, state_path, report.failure().text)};
  return report;
}

Outcome<ScreenPicture> PanelStateReader::screen(int screen) {
  return picture(QStringLiteral("/screen/%1.png").arg(screen));
}

Outcome<ScreenPicture> PanelStateReader::wholePanel() { return picture(QStringLiteral("/panel.png")); }

Outcome<ScreenPicture> PanelStateReader::picture(const QString &path) {
  const Outcome<QByteArray> png = get(path);
  if (!png)
    return png.failure();
  const Outcome<Picture> picture = read_picture(*png);
  if (!picture)
    return Failure{QStringLiteral("cannot read %1%2: %3").arg(_url, path, picture.failure().text)};
  return ScreenPicture{*png, *picture};
}

Outcome<QByteArray> PanelStateReader::get(const QString &path) {
  const std::unique_ptr<QNetworkReply> reply(_network.get(requestFor(path)));
  return answer(*reply, path, http_ok);
}

Outcome<PanelFeed> PanelStateReader::feed(PanelFeed::Kind kind, qint64 since) {
  const QString path = path_of(kind);
  const Outcome<QByteArray> json = get(QStringLiteral("%1?since=%2").arg(path).arg(since));
  if (!json)
    return json.failure();
  Outcome<PanelFeed> feed = parse_panel_feed(kind, *json);
  if (!feed)
    return Failure{QStringLiteral("cannot read %1%2: %3").arg(_url, path, feed.failure().text)};
  return feed;
}

Outcome<Done> PanelStateReader::reset() {
  static const QString path = QStringLiteral("/reset");
  const std::unique_ptr<QNetworkReply> reply(_network.post(requestFor(path), QByteArray()));
  const Outcome<QByteArray> answered = answer(*reply, path, http_no_content);
  if (reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt() == http_conflict)
    return Failure{QStringLiteral("the panel cannot be reset, because another program drives it")};
  if (!answered)
    return answered.failure();
  return Done{};
}

QNetworkRequest PanelStateReader::requestFor(const QString &path) const {
  QNetworkRequest request(QUrl(_url + path));
  request.setTransferTimeout(_timeout_ms);
  // Without it, an empty body that is sent is complained about.
  request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/octet-stream"));
  return request;
}

Outcome<QByteArray> PanelStateReader::answer(QNetworkReply &reply, const QString &path, int wanted_status) {
  QEventLoop loop;
  QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
  if (!reply.isFinished())
    loop.exec();
  const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
  if (reply.error() == QNetworkReply::ConnectionRefusedError)
    return Failure{
        QStringLiteral("%1 refuses the connection; start the virtual panel with --http, and check --panel").arg(_url)};
  if (reply.error() == QNetworkReply::OperationCanceledError || reply.error() == QNetworkReply::TimeoutError)
    return Failure{QStringLiteral("no answer from %1%2 within %3 ms; allow more time with --timeout")
                       .arg(_url, path, QString::number(_timeout_ms))};
  if (status.isValid() && status.toInt() != wanted_status)
    return Failure{QStringLiteral("%1%2 answers with status %3; is that the virtual panel?")
                       .arg(_url, path, QString::number(status.toInt()))};
  if (reply.error() != QNetworkReply::NoError)
    return Failure{QStringLiteral("cannot ask %1%2 (%3); check --panel").arg(_url, path, reply.errorString())};
  return reply.readAll();
}

} // namespace buttondriver::buttonctl
