// SPDX-License-Identifier: Apache-2.0
#include "latency/report/table.h"

#include "latency/report/runs.h"

#include <fstream>
#include <sstream>

namespace buttondriver::latency {

namespace {

std::string emphasised(const std::string &text, bool is_emphasised) {
  return is_emphasised ? "**" + text + "**" : text;
}

/// Such as "none within 60 s".
std::string none_text(const Values &values) {
  return values.waited_seconds == 0 ? "none" : "none within " + text_of(values.waited_seconds, Unit::seconds);
}

/// The three cells of one daemon.
std::string cells(const Row &row, const Values &values) {
  if (values.values.empty())
    return " | " + emphasised(none_text(values), true) + " | 0 ";
  const bool is_missed = !reaches_goal(row, values);
  std::string worst = emphasised(text_of(values.worst(row.unit), row.unit), is_missed);
  if (values.missing > 0)
    worst += ", then " + none_text(values);
  return " " + text_of(values.median(), row.unit) + " | " + worst + " | " + std::to_string(values.values.size()) + " ";
}

void write_device(std::ostream &text, const std::vector<MeasuredRun> &runs, double transfer_seconds) {
  text << "**" << device_title(transfer_seconds) << "**\n\n| Meanwhile | Measured | Goal |";
  std::string rule = "|---|---|---|";
  for (const std::string &daemon : daemons_of(runs)) {
    const std::string name = daemon.empty() ? "" : daemon + ": ";
    text << ' ' << name << "median | " << name << "worst | " << name << "count |";
    rule += "--:|--:|--:|";
  }
  text << '\n' << rule << '\n';
  for (const std::string &load : loads_of(runs)) {
    const std::vector<const MeasuredRun *> columns = runs_of(runs, transfer_seconds, load);
    std::string first_cell = load;
    for (const Row &row : all_rows()) {
      if (columns.empty() || !has_row(*columns.front(), row))
        continue;
      text << "| " << first_cell << " | " << row.title << " | " << goal_text(row) << " |";
      for (const MeasuredRun *run : columns)
        text << cells(row, (*run)[row.id]) << '|';
      text << '\n';
      first_cell.clear();
    }
  }
}

} // namespace

std::string markdown(const std::vector<MeasuredRun> &runs) {
  std::ostringstream text;
  for (const double transfer_seconds : devices_of(runs)) {
    text << (transfer_seconds == runs.front().transfer_seconds ? "" : "\n");
    write_device(text, runs, transfer_seconds);
  }
  return text.str();
}

bool write_csv(const std::string &file, const std::vector<MeasuredRun> &runs) {
  std::ofstream csv(file);
  csv << "transfer_seconds,load,daemon,row,median,worst,count,missing\n";
  for (const MeasuredRun &run : runs)
    for (const Row &row : all_rows()) {
      const Values &values = run[row.id];
      if (has_row(run, row))
        csv << run.transfer_seconds << ',' << run.load.name << ',' << run.daemon_name << ',' << row.name << ','
            << values.median() << ',' << values.worst(row.unit) << ',' << values.values.size() << ',' << values.missing
            << '\n';
    }
  return csv.flush().good();
}

} // namespace buttondriver::latency
