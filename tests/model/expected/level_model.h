// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace buttondriver::test {

/// The brightness of the screens, as the level file has it at each reconfiguration.
class LevelModel {
public:
  /// Reads the level file; no text when there is none.
  void reconfig(const std::optional<std::string> &file);

  /// 0 to 63.
  unsigned intensity() const { return _intensity; }

private:
  void read_piece(const std::string &piece, std::string &key);

  std::int64_t _percent = 100;
  unsigned _intensity = 63;
};

} // namespace buttondriver::test
