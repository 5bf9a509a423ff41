// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/recording/frame_splitter.h"

namespace buttondriver::buttonctl {

std::vector<QByteArray> FrameSplitter::take(const QByteArray &bytes) {
  std::vector<QByteArray> frames = _cutter.take(bytes);
  for (QByteArray &frame : frames)
    frame = framed(frame);
  return frames;
}

} // namespace buttondriver::buttonctl
