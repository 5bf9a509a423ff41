// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/panel/panel_report.h"
#include "buttonctl/pictures/picture.h"
#include "outcome/outcome.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <variant>

namespace buttondriver::buttonctl {

/// Done when the panel is as expected; else what it is, for the user: "LED 5 is off, not on".
using StateTest = std::function<Outcome<Done>(const PanelReport &)>;

struct PictureTest {
  int screen;
  QString file;     ///< the expected picture, a path that can be opened
  Picture expected; ///< null when there is none
};

/// One line of a scenario that says how the panel should be.
struct Expectation {
  QString command;               ///< "expect-led"
  std::optional<int> timeout_ms; ///< of its own
  std::variant<StateTest, PictureTest> test;
};

/// Whether a line that starts with this word is an expectation, right or wrong.
bool is_expectation(const QString &word);

/// The expectation in the words of a line. Pictures are relative to `folder`; one that is there but cannot be read is a
/// failure, unless it is going to be replaced anyway.
Outcome<Expectation> parse_expectation(const QStringList &words, const QString &folder, bool replaces_pictures);

} // namespace buttondriver::buttonctl
