#pragma once

#include <QByteArray>

#include <vector>

class QIODevice;

namespace buttondriver {

/// Takes every complete frame that `stream` holds and returns their messages, in order, without the lengths. What is
/// left is the beginning of a frame; it stays unread. A frame may be empty.
std::vector<QByteArray> take_frames(QIODevice &stream);

} // namespace buttondriver
