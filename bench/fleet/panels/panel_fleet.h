// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/panels/held_port.h"
#include "fleet/panels/panel_state.h"

#include <array>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace buttondriver::fleet {

/// Many panels in one thread of this program, each with a port of its own: they take messages as daemons do, answer
/// pings, remember what they would show, and draw nothing. All functions may be called by any thread.
class PanelFleet {
public:
  /// Listens for all of them. Throws std::runtime_error when there are no ports or descriptors for so many.
  explicit PanelFleet(std::size_t count);
  ~PanelFleet();
  PanelFleet(const PanelFleet &) = delete;
  PanelFleet &operator=(const PanelFleet &) = delete;

  std::size_t size() const { return _panels.size(); }
  std::uint16_t port(std::size_t panel) const { return _panels[panel].port.number(); }

  /// The panel is switched off: its connection ends, others are refused, and what it showed is gone.
  void switchOff(std::size_t panel);
  void switchOn(std::size_t panel);

  /// This one and all above it count as one.
  static constexpr std::size_t most_opcodes = 32;
  struct Counts {
    std::size_t connected = 0;                              ///< panels, now
    std::array<std::uint64_t, most_opcodes + 1> messages{}; ///< by opcode
  };
  Counts counts() const;
  PanelState state(std::size_t panel) const;

  /// Waits until `is_so`, which is asked again after whatever happens to a panel; false when that takes longer than
  /// `limit`. It must not change anything of this object.
  bool waitUntil(const std::function<bool()> &is_so, std::chrono::seconds limit) const;
  /// How many panels do not show what they should; `wanted` has one for each.
  std::size_t differFrom(const std::vector<PanelState> &wanted) const;

  /// Returns and forgets how many nanoseconds the lines took that came since then, as far as they are stamps.
  std::vector<std::int64_t> takeAges();

private:
  struct Panel {
    HeldPort port;
    OwnedDescriptor listener;
    OwnedDescriptor connection;
    std::string unread; ///< the beginning of a frame
    PanelState state;
  };

  void run();
  void watch(const OwnedDescriptor &descriptor, std::uint64_t mark) const;
  void accept(std::size_t index);
  void read(Panel &panel);
  void endConnection(Panel &panel);
  void take(Panel &panel, ByteView message);

  mutable std::recursive_mutex _mutex;
  mutable std::condition_variable_any _something_happened;
  std::vector<Panel> _panels;
  Counts _counts;
  std::vector<std::int64_t> _ages;
  OwnedDescriptor _epoll;
  OwnedDescriptor _end;
  std::thread _thread;
};

} // namespace buttondriver::fleet
