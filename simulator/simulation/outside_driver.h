// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "simulator/device_link/device_socket.h"
#include "simulator/simulation/panel_driver.h"

namespace buttondriver::simulator {

/// Another program, which drives the panel through a socket. Of it, nothing is known but its transfers.
class OutsideDriver : public PanelDriver {
public:
  /// `panel` outlives this object.
  /// `font`, which may be empty, is the one that the program draws texts with: "10x20" for one of the ready-made
  /// root's, or a file.
  OutsideDriver(QString socket, QString font, VirtualPanel &panel)
      : _socket_path(std::move(socket)), _font_name(std::move(font)), _panel(panel), _socket(panel) {}

  /// Makes the socket. Fails when it cannot be had, and when texts cannot be read with the font.
  Outcome<Done> start() override;
  /// At once: a transfer is done when it is known.
  void whenWorkIsDone(std::function<void(const PanelState &)> then) override { then(_panel.state()); }
  void whenTextsCanBeRead(std::function<void(const PanelState &, const ScreenFont &)> then) override {
    then(_panel.state(), _font);
  }
  void count(SimulationCounters &counters) const override { counters.drivers = _socket.hasDriver() ? 1 : 0; }

private:
  QString _socket_path;
  QString _font_name;
  VirtualPanel &_panel;
  DeviceSocket _socket;
  ScreenFont _font = ScreenFont::missing("which font the panel's driver uses is not known; --font tells");
};

} // namespace buttondriver::simulator
