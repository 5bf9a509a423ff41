#pragma once

#include "tools/expectation.h"
#include "tools/outcome.h"
#include "tools/step.h"

#include <QString>

#include <variant>
#include <vector>

namespace buttondriver::buttonctl {

struct ScenarioLine {
  QString where; ///< what a message about this line begins with
  std::variant<Steps, Expectation> content;
};

/// All commands and expectations of `file`, empty lines and comments left out; or what is wrong with the first line
/// that is wrong, its place in front. Names of files in it are relative to its own folder.
Outcome<std::vector<ScenarioLine>> read_scenario(const QString &file, bool replaces_pictures);

} // namespace buttondriver::buttonctl
