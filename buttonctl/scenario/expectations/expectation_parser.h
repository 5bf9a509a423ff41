// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/scenario/expectations/expectation.h"

#include <QStringList>

namespace buttondriver::buttonctl {

/// Whether a line that starts with this word is an expectation, right or wrong.
bool is_expectation(const QString &word);

/// The expectation in the words of a line. Pictures are relative to `folder`; one that is there but cannot be read is a
/// failure, unless it is going to be replaced anyway.
Outcome<Expectation> parse_expectation(const QStringList &words, const QString &folder, bool replaces_pictures);

} // namespace buttondriver::buttonctl
