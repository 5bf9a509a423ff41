// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>
#include <QVector>

namespace buttondriver::bridge {

class MosquittoSession;

/// Makes the subscriptions of one connection, a few at a time, and finds out when all that the broker keeps for them
/// has come: this client publishes a marker for itself, which the broker sends after that. One thread.
///
/// A few at a time, because a broker puts all that it keeps for a subscription into a queue at once, and drops what
/// does not fit: with mosquitto's defaults and MQTT 3.1.1 some thousand messages.
class Subscriptions : public QObject {
  Q_OBJECT

public:
  static constexpr int most_filters_at_once = 16;
  /// How often a marker that does not come back is sent again, each time after nothing came for so long.
  static constexpr int most_markers = 3;
  /// How many of those times a marker is waited for in all, also when other messages keep coming. After that it is
  /// lost, which is logged once. The next ones are sent once, and waited for one such time, until one comes back.
  /// A marker that the broker refuses to take is lost at once.
  static constexpr int most_quiet_times = 12;

  /// `session` has to live as long as this. `quiet_ms`: how long nothing has to come before a marker counts as lost.
  Subscriptions(MosquittoSession &session, int quiet_ms);

  void add(const QVector<QByteArray> &filters);
  void askForEnd(const QByteArray &topic);
  /// Every message of the session has to be shown to this first. True when it is a marker, and for nobody else.
  bool takeMarker(const QByteArray &topic, const QByteArray &payload);
  /// Whether some of what the broker keeps may still be on its way.
  bool isCollecting() const { return _number != 0 || _awaits_marker || _is_unmarked || !_filters.isEmpty(); }

Q_SIGNALS:
  /// All that the broker keeps for what was subscribed before askForEnd() has come.
  void ended();

private:
  void goOn();
  void ask(const QVector<QByteArray> &filters, bool is_own);
  void answered(int number, const QVector<int> &codes);
  void startMarker();
  void sendMarker();
  void waitForMarker();
  void missMarker();
  void refused(const QByteArray &topic);
  void endMarker();

  MosquittoSession &_session;
  const int _quiet_ms;
  QVector<QByteArray> _filters;   ///< that are still to be subscribed
  QVector<QByteArray> _asked_for; ///< those that the broker is to answer for now
  int _number = 0;                ///< by which it will; 0: it is asked for nothing
  QByteArray _marker_topic;
  bool _has_marker_topic = false; ///< subscribed
  QByteArray _marker;             ///< the payload that is awaited
  quint64 _markers = 0;           ///< sent so far
  int _misses = 0;
  bool _awaits_marker = false;
  bool _is_lost = false;     ///< the last marker that was waited for
  bool _is_unmarked = false; ///< a marker has to be sent after what was subscribed
  bool _is_to_tell_end = false;
  QTimer _quiet;
  QDeadlineTimer _patience; ///< with the marker, whatever comes
};

} // namespace buttondriver::bridge
