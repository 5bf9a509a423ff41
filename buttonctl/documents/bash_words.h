// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver::buttonctl {

/// Functions of bash that join the words of a line again which bash has split at ":" and "=", and fit what is offered
/// to the part of a word that bash replaces. The completion of the simulator has a copy of them, with its own prefix in
/// their names; a test compares both.
extern const char *const bash_words_functions;

} // namespace buttondriver::buttonctl
