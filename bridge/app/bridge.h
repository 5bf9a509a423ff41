// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/app/fleet.h"
#include "bridge/app/publishing/discovery_queue.h"
#include "bridge/app/publishing/lost_topics.h"
#include "bridge/app/topic_route.h"
#include "bridge/broker/broker_connection.h"
#include "bridge/configuration/configuration.h"
#include "bridge/seen/metrics_server.h"
#include "bridge/seen/numbers.h"
#include "bridge/seen/statistics.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QObject>
#include <QSet>
#include <QTimer>
#include <QVector>

#include <memory>

namespace buttondriver::bridge {

/// Between a broker and panels: what is published becomes commands, and what happens is published. One thread, that of
/// the event loop.
class Bridge : public QObject {
  Q_OBJECT

public:
  struct Times {
    BrokerConnection::Times broker;
    PanelLink::Times panel;
    int order_pause_ms = 1000; ///< from a change of the order to its record
  };

  Bridge();
  explicit Bridge(Times times);

  /// Starts to connect, to the broker and to all panels.
  Outcome<Done> start(const Configuration &configuration);
  /// Goes over to another configuration. Connections that are not different stay. The prefix and the bridge's own name
  /// are those of the start as long as the program runs; a failure tells of that, and all else is taken over.
  Outcome<Done> change(const Configuration &configuration);
  /// Tells that the panels are not available any more, and ends the connection to the broker.
  void end();

  const Fleet &fleet() const { return _fleet; }
  BridgeNumbers numbers() const;
  /// Of the page of numbers; 0: there is none.
  quint16 metricsPort() const { return _metrics ? _metrics->port() : 0; }

Q_SIGNALS:
  /// What the broker kept has been compared with what is known, and the panels are told.
  void synced();

private:
  void adopt(Panel *panel);
  void subscribeAll();
  void sayGoodbye();
  void refuseTooLarge(const QByteArray &topic);
  void compare(const QVector<Panel *> &panels, const QVector<QByteArray> &filters);
  void finishSync();
  void take(const QByteArray &topic, const QByteArray &payload, bool is_retained, bool is_old);
  void act(const TopicRoute &route, const QByteArray &key, const QByteArray &payload, bool is_retained, bool is_old);
  void refuse(const QByteArray &root, const QByteArray &key, const QByteArray &why);
  void publishAvailability(const Panel &panel);
  void publishOrders();
  void publishStatistics();
  void announce(const QByteArray &panel);
  void clearPublished(const QByteArray &panel);
  bool publish(const QByteArray &tail, const QByteArray &payload, bool is_retained, int quality_of_service = 1);
  bool publish(const QVector<Publication> &publications);
  void serveMetrics();
  QByteArray ownTopic(const char *tail) const;
  QByteArray metricsPage() const;

  const Times _times;
  Configuration _configuration;
  BrokerConnection _broker;
  Fleet _fleet;
  DiscoveryQueue _discovery;
  std::unique_ptr<LostTopics> _lost; // of the present connection to the broker
  Statistics _statistics;
  std::unique_ptr<MetricsServer> _metrics;
  QTimer _order_timer;
  QTimer _statistics_timer;
  QSet<QByteArray> _orders_to_look_at; // names of panels
  QSet<QByteArray> _to_clear;          // names of panels that went while there was no connection
  QString _told_reason;                // why there is no connection to the broker
  quint64 _messages = 0;
  quint64 _wrong_messages = 0;
  bool _is_comparing = false; // counts while there is a connection, which begins with a comparison
};

} // namespace buttondriver::bridge
