// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/http/page/live_update.h"
#include "simulator/http/page/page_session.h"

#include <QObject>
#include <QTimer>
#include <QWebSocket>

#include <memory>
#include <vector>

namespace buttondriver::simulator {

/// Keeps all open pages up to date: looks thirty times a second whether something has changed, and sends each page what
/// it has not been sent; messages and log lines, which nobody reads that fast, less than four times a second, and when
/// there are many, less than once. Pages that keep up share one update. Without pages it does nothing.
class LiveFeed : public QObject {
  Q_OBJECT

public:
  static constexpr int interval_ms = 33;
  /// After an update with messages or log lines, at least so many without; as many as this after a full one.
  static constexpr std::size_t fewest_looks_without_entries = 7;
  static constexpr std::size_t most_looks_without_entries = 30;
  static constexpr std::size_t most_pages = 32;

  /// `simulation` outlives this object.
  explicit LiveFeed(Simulation &simulation);
  ~LiveFeed() override;

  /// Takes a newly connected page; one too many is sent away.
  void add(std::unique_ptr<QWebSocket> socket);

private:
  void look();
  void forget(PageSession *page);

  Simulation &_simulation;
  QTimer _timer;
  std::size_t _looks_to_entries = 0;
  std::vector<std::unique_ptr<PageSession>> _pages;
  std::vector<std::unique_ptr<PageSession>> _ended;
};

} // namespace buttondriver::simulator
