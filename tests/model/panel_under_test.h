// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_setter_impl.h"
#include "fpga/fpga.h"
#include "model/commands/command.h"
#include "model/shown_panel.h"
#include "simulator/device/virtual_panel.h"
#include "support/test_root.h"

#include <QBuffer>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace buttondriver::test {

/// Says of a transfer whether it gets lost on its way to the panel.
using LossyWire = std::function<bool(const panel::TransferRecord &)>;

/// The daemon's dispatcher, facade and worker on a virtual panel, without the network: what the model is compared with.
/// One at a time.
class PanelUnderTest {
public:
  /// Fonts are looked for in `font_folder`.
  explicit PanelUnderTest(const std::string &font_folder, LossyWire loses = {});
  ~PanelUnderTest();

  /// A new panel and a new dispatcher, no level file, and the font of `width` x `height`. The facade and its worker
  /// stay: the system takes its time to end the watch on a file.
  void restart(int width, int height);

  /// Messages are given to the daemon together with those that follow, at the next command of another kind.
  void apply(const Command &command);
  /// What is to be seen when all is done that was asked for. Throws std::runtime_error when that takes a minute.
  ShownPanel shown();

private:
  /// Hands transfers on to the panel, but for those that get lost.
  class Wire : public panel::RegisterDevice {
  public:
    explicit Wire(LossyWire loses) : _loses(std::move(loses)) {}
    int open(const char *) override { return 0; }
    int transfer(int descriptor, unsigned long request, panel::TransferRecord &record, std::uint16_t *words) override {
      return _loses && _loses(record) ? 0 : panel->transfer(descriptor, request, record, words);
    }
    std::optional<simulator::VirtualPanel> panel{std::in_place};

  private:
    LossyWire _loses;
  };

  void deliver();
  void waitForWorker();
  void chooseFont(int width, int height);

  TestRoot _root;
  int _configurations_written = 0;
  SystemPaths _paths;
  Wire _wire;
  std::optional<FPGA> _fpga;
  ButtonMap _buttons;
  std::optional<ButtonSetterImpl> _dispatcher;
  std::optional<QBuffer> _answers;
  std::vector<QByteArray> _undelivered;
};

} // namespace buttondriver::test
