// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/subscriptions.h"

#include "bridge/broker/mosquitto_session.h"
#include "logging/log_line.h"

#include <QRandomGenerator>

#include <algorithm>
#include <utility>

namespace buttondriver::bridge {

Subscriptions::Subscriptions(MosquittoSession &session, int quiet_ms) : _session(session) {
  _quiet.setSingleShot(true);
  _quiet.setInterval(quiet_ms);
  connect(&_quiet, &QTimer::timeout, this, &Subscriptions::missMarker);
  connect(&_session, &MosquittoSession::subscribed, this, &Subscriptions::answered);
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
    return sendMarker();
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

void Subscriptions::sendMarker() {
  _awaits_marker = true;
  _is_unmarked = false;
  ++_markers;
  _quiet.start();
  _session.publish(_marker_topic, _marker + QByteArray::number(_markers), false, 1);
}

bool Subscriptions::takeMarker(const QByteArray &topic, const QByteArray &payload) {
  if (_awaits_marker)
    _quiet.start(); // it comes after this
  if (_marker_topic.isEmpty() || topic != _marker_topic)
    return false;
  if (_awaits_marker && payload == _marker + QByteArray::number(_markers))
    markerCame();
  return true;
}

void Subscriptions::missMarker() {
  if (++_misses < most_markers)
    return sendMarker();
  critical_line() << "The broker does not send" << QString::fromUtf8(_marker_topic)
                  << "back: what it keeps may be incomplete";
  markerCame();
}

void Subscriptions::markerCame() {
  _quiet.stop();
  _awaits_marker = false;
  _misses = 0;
  goOn();
}

} // namespace buttondriver::bridge
