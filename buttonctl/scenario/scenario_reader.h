// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/scenario/expectations/expectation.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <variant>
#include <vector>

namespace buttondriver::buttonctl {

/// Stands for standard input.
inline constexpr QLatin1String standard_input_name("-");

/// Puts the panel back as it was after its start.
struct Reset {};

using ScenarioContent = std::variant<Steps, Expectation, Reset>;

struct ScenarioLine {
  QString where; ///< what a message about this line begins with
  ScenarioContent content;
};

/// All commands and expectations in `content`, empty lines and comments left out; or what is wrong with the first line
/// that is wrong, after "`file`:LINE: ". Names of files in it are relative to the folder of `file`.
Outcome<std::vector<ScenarioLine>> parse_scenario(const CommandTable &commands, const QString &file,
                                                  const QByteArray &content, bool replaces_pictures);

/// Where the files lie that the scenario `file` names.
QString folder_of_scenario(const QString &file);

/// How many of `lines` are expectations.
int count_expectations(const std::vector<ScenarioLine> &lines);

/// As parse_scenario, from a file, or from standard input.
Outcome<std::vector<ScenarioLine>> read_scenario(const CommandTable &commands, const QString &file,
                                                 bool replaces_pictures);

} // namespace buttondriver::buttonctl
