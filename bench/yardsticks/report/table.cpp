// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/report/table.h"

#include "yardsticks/report/texts.h"

#include <fstream>
#include <sstream>

namespace buttondriver::yardsticks {

namespace {

/// Our value stands for the outcome where the goal speaks of nothing else.
std::string outcome_cell(const Comparison &row) {
  const std::string text = outcome_text(row);
  const std::string shown = text.empty() ? text_of(spread_of(row.ours).median, row.unit) : text;
  return reaches_goal(row) ? shown : "**" + shown + "**";
}

void write_values(std::ostream &csv, const Group &group, const Comparison &row, const char *side,
                  const std::vector<double> &values) {
  for (std::size_t run = 0; run < values.size(); ++run)
    csv << group.name << ',' << row.name << ',' << side << ',' << run + 1 << ',' << values[run] << '\n';
}

} // namespace

std::string markdown(const Group &group) {
  std::ostringstream text;
  text << "## " << group.title << "\n\n"
       << group.introduction << "\n\n| Measured | Ours | Compared with | Theirs | Ours against theirs | Goal |\n"
       << "|---|--:|---|--:|--:|---|\n";
  for (const Comparison &row : group.rows)
    text << "| " << row.title << " | " << spread_text(spread_of(row.ours), row.unit) << " | " << row.yardstick << " | "
         << spread_text(spread_of(row.theirs), row.unit) << " | " << outcome_cell(row) << " | " << goal_text(row)
         << " |\n";
  return text.str();
}

bool write_csv(const std::string &file, const std::vector<Group> &groups) {
  std::ofstream csv(file);
  csv << "group,row,side,run,value\n";
  for (const Group &group : groups)
    for (const Comparison &row : group.rows) {
      write_values(csv, group, row, "ours", row.ours);
      write_values(csv, group, row, "theirs", row.theirs);
    }
  return csv.flush().good();
}

} // namespace buttondriver::yardsticks
