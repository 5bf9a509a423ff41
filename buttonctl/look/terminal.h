// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/look/half_blocks.h"

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// What is known of the terminal, as the environment and the system tell it.
struct TerminalFacts {
  bool is_terminal; ///< standard output is one
  QByteArray term;  ///< TERM
  QByteArray colorterm;
  QByteArray no_color;
};

TerminalFacts terminal_facts();

/// None when it is no terminal, when NO_COLOR holds anything, or for TERM=dumb; all where COLORTERM or TERM promise 24
/// bits; few otherwise, since next to every terminal of today has 256, and over SSH nothing tells of more.
Colours colours_of(const TerminalFacts &facts);

/// Columns and rows: of the terminal; otherwise by COLUMNS and LINES; otherwise 80 x 24.
QSize terminal_size();

/// The second screen of the terminal, without a cursor, for as long as this lives; then all is as before.
class FullScreen {
public:
  FullScreen();
  ~FullScreen();
  FullScreen(const FullScreen &) = delete;
  FullScreen &operator=(const FullScreen &) = delete;

  /// Replaces what was shown before. Nothing flickers, since nothing is cleared before it is written over.
  void show(const QStringList &lines);
};

} // namespace buttondriver::buttonctl
