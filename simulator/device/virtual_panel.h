// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "panel/registers/register_device.h"
#include "simulator/device/panel_changes.h"
#include "simulator/device/panel_state.h"
#include "simulator/device/tft_controller.h"
#include "simulator/device/transfer.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>

namespace buttondriver::simulator {

class TransferRecorder;

/// The panel without the panel: takes the records that the device would get, and shows what they would do. It can be
/// looked at from any thread while the worker writes.
class VirtualPanel : public panel::RegisterDevice {
public:
  /// How many transfers came, and how many of them no device would have accepted.
  struct Counters {
    std::uint64_t transfers = 0;
    std::uint64_t refused = 0;
  };

  /// Any path opens.
  int open(const char *path) override;
  /// Returns 0, or -1 with errno EINVAL for a record that no device would accept; the first such record is told on
  /// standard output with its bytes.
  int transfer(int descriptor, unsigned long request, panel::TransferRecord &record, std::uint16_t *words) override;

  /// Has the same effect as a transfer that no device would accept, for this reason.
  int refuse(const char *reason, unsigned long request, const panel::TransferRecord &record);

  /// Sees every accepted transfer, a read with what it returned, from now on; null ends that. It outlives its use here.
  void setRecorder(TransferRecorder *recorder);

  PanelState state() const;
  /// Grows with every change of what state() returns. Costs nothing: for those who look often.
  std::uint64_t revision() const { return _revision.load(std::memory_order_acquire); }
  /// The rows of pixels that have changed since `seen`, and how far that is. Lamps and intensity are in lamps().
  PanelChanges changesSince(const PanelRevision &seen) const;
  /// What state() says about everything but the screens.
  PanelLamps lamps() const;
  Counters counters() const;

private:
  int refuseLocked(const char *reason, unsigned long request, const panel::TransferRecord &record);
  void carryOut(const Transfer &transfer);
  template <class Value> void setLamp(Value &lamp, Value value);
  void countChanges();
  void read(const Transfer &transfer);
  void writeWord(std::uint32_t address, std::uint16_t word);
  void writeLedCommand(std::uint8_t command);
  void writeTft(std::uint32_t address, std::uint16_t word);

  mutable std::mutex _mutex;
  TransferRecorder *_recorder = nullptr;
  Counters _counters;
  std::map<std::uint32_t, std::uint16_t> _registers;
  PanelLamps _lamps;
  std::uint64_t _lamp_revision = 0;
  std::atomic<std::uint64_t> _revision{0};
  std::array<TftController, dimensions::screen_count> _controllers;
};

} // namespace buttondriver::simulator
