// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/subscriptions.h"

#include "bridge/broker/mosquitto_session.h"
#include "logging/log_line.h"

#include <QRandomGenerator>

#include <algorithm>
#include <utility>

namespace buttondriver::bridge {

Subscriptions::Subscriptions(MosquittoSession &session, int quiet_ms) : _session(session), _quiet_ms(quiet_ms) {
  _quiet.setSingleShot(true);
  connect(&_quiet, &QTimer::timeout, this, &Subscriptions::missMarker);
  connect(&_session, &MosquittoSession::subscribed, this, &Subscriptions::answered);
  connect(&_session, &MosquittoSession::refused, this, &Subscriptions::refused);
  // Somebody else's markers, of an earlier connection too, have to differ.
  _marker = QByteArray::number(QRandomGenerator::system()->generate64(), 16) + ' ';
}

void Subscriptions::add(const QVector<QByteArray> &filters) {
  _filters += filters;
  goOn();
}

void Subscriptions::askForEnd(const QByteArray &topic) {
  if (topic != _marker_topic) {
    _marker_topic = topic;
    _has_marker_topic = false;
  }
  _is_to_tell_end = true;
  _is_unmarked = true;
  goOn();
}

void Subscriptions::goOn() {
  if (_number != 0 || _awaits_marker)
    return;
  if (!_marker_topic.isEmpty() && !_has_marker_topic) {
    _has_marker_topic = true;
    return ask({_marker_topic}, true);
  }
  // Also between the subscriptions, so that the broker's queue is empty before the next one.
  if (_has_marker_topic && _is_unmarked)
    return startMarker();
  if (!_filters.isEmpty()) {
    const QVector<QByteArray> some = _filters.mid(0, most_filters_at_once);
    _filters.remove(0, some.size());
    _is_unmarked = true;
    return ask(some, false);
  }
  if (std::exchange(_is_to_tell_end, false))
    Q_EMIT ended();
}

void Subscriptions::ask(const QVector<QByteArray> &filters, bool is_own) {
  _asked_for = filters;
  _number = _session.subscribe(filters, is_own);
}

void Subscriptions::answered(int number, const QVector<int> &codes) {
  if (number != _number)
    return;
  _number = 0;
  constexpr int first_refusal = 0x80;
  for (int i = 0; i < std::min(codes.size(), _asked_for.size()); ++i)
    if (codes[i] >= first_refusal)
      critical_line() << "The broker refuses the subscription of" << QString::fromUtf8(_asked_for[i]) << "with code"
                      << codes[i];
  goOn();
}

void Subscriptions::startMarker() {
  _awaits_marker = true;
  _is_unmarked = false;
  _patience.setRemainingTime(qint64(_quiet_ms) * (_is_lost ? 1 : most_quiet_times));
  sendMarker();
}

void Subscriptions::sendMarker() {
  ++_markers;
  waitForMarker();
  _session.publish(_marker_topic, _marker + QByteArray::number(_markers), false, 1);
}

void Subscriptions::waitForMarker() {
  _quiet.start(static_cast<int>(std::min<qint64>(_quiet_ms, _patience.remainingTime())));
}

bool Subscriptions::takeMarker(const QByteArray &topic, const QByteArray &payload) {
  if (_awaits_marker)
    waitForMarker(); // it comes after this
  if (_marker_topic.isEmpty() || topic != _marker_topic)
    return false;
  if (_awaits_marker && payload == _marker + QByteArray::number(_markers)) {
    _is_lost = false;
    endMarker();
  }
  return true;
}

void Subscriptions::missMarker() {
  if (++_misses < most_markers && !_is_lost && !_patience.hasExpired())
    return sendMarker();
  if (!std::exchange(_is_lost, true))
    critical_line() << "The broker does not send" << QString::fromUtf8(_marker_topic)
                    << "back: what it keeps may be incomplete";
  endMarker();
}

void Subscriptions::refused(const QByteArray &topic) {
  if (!_awaits_marker || topic != _marker_topic)
    return;
  _is_lost = true; // which is logged as a refusal
  endMarker();
}

void Subscriptions::endMarker() {
  _quiet.stop();
  _awaits_marker = false;
  _misses = 0;
  goOn();
}

} // namespace buttondriver::bridge
