// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

/// What the program prints: answers on standard output, what goes wrong on standard error.
namespace buttondriver::buttonctl {

/// `text` with its control characters as \x and two digits, because they must not break a line or drive the terminal.
QString as_one_line(const QString &text);

// When nobody reads standard output any more, each of these functions ends the program as SIGPIPE does.

/// Writes `text` as it is.
void print(const QString &text);
/// Writes bytes that are no text.
void print_bytes(const QByteArray &bytes);
/// Writes a line at once, since whoever reads lines through a pipe wants to see them come.
void print_line(const QString &text);
/// Writes what is still in the program; false when that, or anything written before, failed.
bool flush_output();

/// Writes `text` as it is on standard error.
void print_error(const QString &text);
/// "buttonctl: ", `where` and `text` as one line on standard error.
void warn(const QString &text, const QString &where = QString());
/// As warn; returns `exit_status`.
int report(const Failure &failure, int exit_status, const QString &where = QString());

} // namespace buttondriver::buttonctl
