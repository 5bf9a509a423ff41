// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/doctor_command.h"

#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

int run_doctor(const Examination &examination) {
  const Outcome<FileLook> look = look_of(examination);
  if (!look)
    return report(look.failure(), exit_bad_usage, QStringLiteral("doctor: "));
  const std::vector<Finding> findings = examine(examination, *look);
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
  return {arguments.option("root"),
          arguments.hasOption("virtual"),
          context.endpoint,
          arguments.option("user"),
          qEnvironmentVariable("PATH").split(QLatin1Char(':')),
          QStringLiteral(BUTTONDRIVER_VERSION)};
}

Command doctor_command() {
  return {"doctor",
          "",
          "find out why the panel does not work",
          QStringLiteral(
              "Checks the configuration, the font, the levels, the device, the service and the program of this\n"
              "machine, and asks the daemon for an answer. Each check is one line, 'ok', 'note' or 'FAULT'; below a\n"
              "fault is a command line that mends it, to be run as root where the file belongs to root. None of them\n"
              "replaces a file. When --host is another machine, only the daemon is checked. Exit status: 0 all is\n"
              "well, 1 there is a fault, 2 there is no such user.\n"),
          "buttonctl doctor\n"
          "sudo buttonctl doctor --user buttondriver\n"
          "buttonctl doctor --root build/qt6/share/buttondriver/panel-root --virtual\n",
          {{"root", "DIR", "look for all files under DIR: /etc, /opt, /dev, /usr, /run"},
           {"user", "NAME", "check what this user may read and write; 'buttondriver' is the service's"},
           {"virtual", nullptr, "the panel is virtual: do not look for a device or a service"}},
          build_doctor};
}

} // namespace buttondriver::buttonctl
