// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/look/state_command.h"

#include "buttonctl/look/state_text.h"
#include "buttonctl/panel/panel_state_reader.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

namespace buttondriver::buttonctl {

namespace {

struct StatePlan {
  bool as_json;
  QString panel_url;
  int timeout_ms;
};

int print_state(const StatePlan &plan) {
  PanelStateReader panel(plan.panel_url, plan.timeout_ms);
  if (plan.as_json) {
    const Outcome<QByteArray> json = panel.stateJson();
    if (!json)
      return report(json.failure(), exit_unreachable);
    print_bytes(json->endsWith('\n') ? *json : *json + '\n');
    return exit_done;
  }
  const Outcome<PanelReport> state = panel.state();
  if (!state)
    return report(state.failure(), exit_unreachable);
  print(state_text(*state));
  return exit_done;
}

Action build_state(ArgumentReader &arguments, const CommandContext &context) {
  refuse_dry_run(arguments, context);
  return [plan = StatePlan{arguments.hasOption("json"), panel_of(arguments, context), context.endpoint.timeout_ms}] {
    return print_state(plan);
  };
}

} // namespace

Command state_command() {
  return {
      "state",
      "",
      "tell what the virtual panel shows",
      QStringLiteral("Prints the lines of text on each screen, as they are read from its pixels, with their numbers;\n"
                     "where something else was sent, that too. Then the LEDs and indicators that are\n"
                     "on, and the brightness. A blinking LED stands with the time of its phases.\n"
                     "\n"
                     "  screen 0\n"
                     "    0: Channel 7\n"
                     "    2: Ready\n"
                     "  screen 1\n"
                     "  screen 2\n"
                     "  LEDs: 6 on, 5 blinking (500 ms)\n"
                     "  status LEDs: 0 on\n"
                     "  toggle indicators: none on\n"
                     "  brightness: 63 of 63\n"),
      "buttonctl state\n"
      "buttonctl state --json --panel http://127.0.0.1:8081\n",
      {{"json", nullptr, "print /state.json as the panel sends it"}},
      build_state};
}

} // namespace buttondriver::buttonctl
