// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "yardsticks/report/comparison.h"

#include <string>
#include <vector>

namespace buttondriver::yardsticks {

/// A chapter in Markdown: heading, introduction, and the rows as a table. An outcome that misses its goal is in bold
/// letters.
std::string markdown(const Group &group);

/// Each single value: of which side it is, and in which run it was taken; in seconds or bytes. False when the file
/// could not be written.
bool write_csv(const std::string &file, const std::vector<Group> &groups);

} // namespace buttondriver::yardsticks
