// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor_command.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

int run_doctor(const Examination &examination) {
  const std::vector<Finding> findings = examine(examination, look_at_file);
  for (const Finding &finding : findings)
    print_line(shown(finding));
  const bool is_ill =
      std::any_of(findings.begin(), findings.end(), [](const Finding &finding) { return finding.isFault(); });
  return is_ill ? exit_unreachable : exit_done;
}

Action build_doctor(ArgumentReader &arguments, const CommandContext &context) {
  return [examination = read_examination(arguments, context)] { return run_doctor(examination); };
}

} // namespace

Examination read_examination(ArgumentReader &arguments, const CommandContext &context) {
  refuse_dry_run(arguments, context);
  return {arguments.option("root"), arguments.hasOption("virtual"), context.endpoint};
}

Command doctor_command() {
  return {"doctor",
          "",
          "find out why the panel does not work",
          QStringLiteral(
              "Checks the configuration, the font, the levels and the device of this machine, and asks the daemon\n"
              "for an answer. Each check is one line, 'ok' or 'FAULT'; below a fault is a command line that\n"
              "mends it, to be run as root where the file belongs to root. When --host is another machine, only\n"
              "the daemon is checked. Exit status: 0 all is well, 1 there is a fault.\n"),
          "buttonctl doctor\n"
          "buttonctl doctor --root build/qt6/share/buttondriver/panel-root --virtual\n",
          {{"root", "DIR", "look for /dev, /etc/rv1000e and /opt/rv1000e under DIR, as buttondriver-sim does"},
           {"virtual", nullptr, "the panel is virtual: do not look for a device"}},
          build_doctor};
}

} // namespace buttondriver::buttonctl
