// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QSize>
#include <QString>

namespace buttondriver::simulator {

/// The folder with a configuration and fonts that is shipped beside the program, in the build folder as in an
/// installation.
QString ready_made_root();

/// Reads "10x20", the size of a font's cells in pixels, each side 1 to 999; an invalid size for anything else.
QSize read_font_size(const QString &text);

/// The file of the font of this size in `folder`; a failure that names those which are there when it is not.
Outcome<QString> find_font(const QString &folder, QSize size);

} // namespace buttondriver::simulator
