// SPDX-License-Identifier: Apache-2.0
#include "latency/load_kind.h"

#include "soak/load/frames.h"

namespace buttondriver::latency {

namespace {

std::string small_picture() { return soak::picture_frame(40); }

} // namespace

const std::vector<LoadKind> &all_load_kinds() {
  static const std::vector<LoadKind> kinds = {
      {"idle", "nobody else", 0, nullptr},
      {"picture", "1 client streams pictures", 1, small_picture},
      {"pictures", "5 clients stream pictures", 5, small_picture},
      {"text", "1 client floods with text", 1, soak::text_line_frames},
      {"texts", "5 clients flood with text", 5, soak::text_line_frames},
  };
  return kinds;
}

} // namespace buttondriver::latency
