// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/measure/groups.h"

namespace buttondriver::yardsticks {

const std::vector<GroupKind> &all_group_kinds() {
  static const std::vector<GroupKind> kinds = {
      {"messages", measure_messages}, {"connections", measure_connections},
      {"drawing", measure_drawing},   {"processes", measure_processes},
      {"lcdd", measure_lcdd},
  };
  return kinds;
}

} // namespace buttondriver::yardsticks
