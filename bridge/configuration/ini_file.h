// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/configuration/problems.h"

#include <QByteArray>

#include <vector>

namespace buttondriver::bridge {

/// A line "key = value". Nothing of it is empty.
struct IniLine {
  int line = 0; ///< counts from 1
  QByteArray section;
  QByteArray key;
  QByteArray value;
};

/// The first line of a section.
struct IniSection {
  int line = 0;
  QByteArray name;
};

struct IniFile {
  std::vector<IniSection> sections;
  std::vector<IniLine> lines;
};

/// Not QSettings: that tells no line, takes a key twice, and what it does not understand.
///
/// What is in `text`, which has sections "[name]", lines "key = value", empty lines, and lines of comment that begin
/// with "#" or ";". Blanks around names and values do not count. No key comes twice in a section, nor a section twice.
/// Whatever is not so is a problem and left out.
IniFile ini_file(const QByteArray &text, Problems &problems);

/// A text of the file as it is shown in a problem: in double quotes, not too long, what cannot be printed as "?".
QString quoted(const QByteArray &text);

} // namespace buttondriver::bridge
