// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/recording/recording.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace buttondriver::buttonctl {

struct Recording {
  std::vector<RecordedFrame> frames;
  std::vector<int> lines; ///< of each frame, counted from 1
  QString remark;         ///< what is odd about the file but no failure, after its place; mostly empty
};

/// The recording in `content`; or what is wrong with the first line that is wrong, after "`file`:LINE: ". A last line
/// that has no end and is not whole, as a recorder leaves it that was killed, is left out with a remark.
Outcome<Recording> parse_recording(const QString &file, const QByteArray &content);

/// The first line of a recording; the failure does not name the place.
Outcome<Done> check_recording_title(const QByteArray &line);

/// One line after it that is a frame; the failure does not name the place. Whether times go backwards is not looked at.
Outcome<RecordedFrame> parse_recorded_frame(const QByteArray &line);

/// A line that is passed over.
bool is_recording_remark(const QByteArray &line);

/// As parse_recording, from a file.
Outcome<Recording> read_recording(const QString &file);

} // namespace buttondriver::buttonctl
