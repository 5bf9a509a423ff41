// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device/virtual_panel.h"
#include "simulator/simulation/panel_driver.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

namespace buttondriver::simulator {

/// The daemon's own object graph in this program. One object a process.
class OwnDaemon : public PanelDriver {
public:
  struct Settings {
    QString root;          ///< folder that the fixed paths lie under; empty for the ready-made one
    QString font;          ///< "10x20", in place of the configured one; empty: that
    int intensity_percent; ///< of the screens, after the start and after a reset
    QStringList arguments; ///< as the daemon itself would get them
    bool keeps_messages = false;
  };

  /// `panel`, which outlives this object, is the device of this process from now on.
  OwnDaemon(const Settings &settings, VirtualPanel &panel);
  ~OwnDaemon() override;

  /// Starts the daemon. Fails when there is no such root or font, and when its port cannot be had.
  Outcome<Done> start() override;
  void whenWorkIsDone(std::function<void(const PanelState &)> then) override;
  void whenTextsCanBeRead(std::function<void(const PanelState &, const ScreenFont &)> then) override;
  void count(SimulationCounters &counters) const override;
  Daemon *daemon() override { return &*_daemon; }
  const MessageObserver *messages() const override { return &_messages; }
  void reset(const std::function<void()> &then) override;

private:
  void resetNow();
  /// Where the daemon finds its files.
  Outcome<SystemPaths> paths();

  Settings _settings;
  VirtualPanel &_panel;
  MessageObserver _messages;
  std::optional<QTemporaryDir> _configuration; // with the font that was chosen
  std::optional<Daemon> _daemon;
  std::optional<QObject> _waiting{std::in_place}; // for clients that leave; goes before the daemon does
};

} // namespace buttondriver::simulator
