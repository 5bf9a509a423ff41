// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/records.h"

#include <string>
#include <string_view>

namespace buttondriver {

/// Prints the messages that write a part of a text line. Keeps the memory for a usual one, up to 64 KiB.
class SubTextLineLog {
public:
  /// `line` in the machine's byte order; `text` is the one that came with it.
  void print(const BMS_TFTSubTextLine &line, std::string_view text);

private:
  std::string _line;
};

} // namespace buttondriver
