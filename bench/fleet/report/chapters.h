// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fleet/measure/disturbed_run.h"
#include "fleet/measure/setting.h"
#include "fleet/measure/steady_run.h"
#include "yardsticks/report/comparison.h"

#include <string>
#include <vector>

namespace buttondriver::fleet {

/// The runs of both sides, as many of the one as of the other.
yardsticks::Group steady_group(const Setting &setting, const std::vector<SteadyRun> &ours,
                               const std::vector<SteadyRun> &theirs);
/// The memory that they took.
yardsticks::Group memory_group(const Setting &setting, const std::vector<SteadyRun> &ours);
/// A chapter in Markdown.
std::string disturbed_chapter(const Setting &setting, const std::vector<Disturbance> &disturbances);

} // namespace buttondriver::fleet
