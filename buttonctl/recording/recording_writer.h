// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/recording/recording.h"
#include "files/owned_file.h"
#include "outcome/outcome.h"

#include <QString>

namespace buttondriver::buttonctl {

/// Writes a recording, line by line; a file of the same name is replaced. Each line is in the file when `write`
/// returns, so that the file is whole whenever the program ends.
class RecordingWriter {
public:
  /// Makes the file and writes its first line.
  Outcome<Done> open(const QString &file);
  /// Times must not go backwards.
  Outcome<Done> write(const RecordedFrame &frame);

private:
  Outcome<Done> writeLine(const QByteArray &line);

  QString _name;
  OwnedFile _file;
};

} // namespace buttondriver::buttonctl
