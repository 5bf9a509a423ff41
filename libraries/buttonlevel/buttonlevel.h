// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

#include <string>

/// The file of the two brightness levels that survive a restart, two lines of text:
///
///     lcd 100
///     scr 100
///
/// In a program a level is a decimal number as text, and the two stand in a list: first the lcd level, then the scr
/// level; further elements are ignored. Nobody checks a level. The routines share nothing, so any thread may call
/// them, but they do not lock the file against each other. Whatever is not a regular file counts as one that cannot be
/// opened, so that none of them ever waits for a pipe's other end.
namespace buttondriver {

/// The path of the file unless the caller gives another.
const std::string &buttonlevel_path();

/// Writes both levels, replacing what the file held; makes the file when it is missing, but not its folder. A level
/// that `levels` does not hold is written as the default, 100. When the file cannot be opened: one log line.
void writeButtonlevelFile(const QStringList &levels, const std::string &path = buttonlevel_path());

/// Writes the default, 100, for both levels.
void writeDefaultButtonlevelFile(const std::string &path = buttonlevel_path());

/// Reads both levels into `levels`; a missing file is first written with the defaults. Only levels that the file holds
/// are replaced: other lines, lines without a level and lines that do not end within the first 64 KiB are skipped, and
/// the last line of a key counts. A file of more than 64 KiB gives a log line too. A list that is too short is filled
/// up to two elements, with empty texts, before a level is stored.
///
/// True when `levels` holds an element in the end, whether or not the file held a level. False when it holds
/// none, or when the file cannot be opened: then `levels` is unchanged, and there is one log line.
bool readButtonlevelFile(QStringList &levels, const std::string &path = buttonlevel_path());

} // namespace buttondriver
