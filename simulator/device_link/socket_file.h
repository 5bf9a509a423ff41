// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QByteArray>

#include <sys/types.h>

namespace buttondriver::simulator {

/// A Unix socket that listens at a path, for this user only. The file is removed when the object goes, unless another
/// one has taken its place.
class SocketFile {
public:
  SocketFile() = default;
  ~SocketFile();
  SocketFile(const SocketFile &) = delete;
  SocketFile &operator=(const SocketFile &) = delete;

  /// Makes the file at `path` and listens. A socket that nobody listens on any more is replaced. Fails when somebody
  /// does listen there, when another kind of file is there, and when the path is too long for a socket.
  Outcome<Done> listen(const QByteArray &path);

  /// Accepts without waiting; -1 when nobody has connected. The descriptor is the caller's, and does not block.
  int accept() const;
  /// What becomes readable when somebody connects; -1 before listen().
  int descriptor() const { return _descriptor; }

private:
  QByteArray _path; // empty: no file of ours
  int _descriptor = -1;
  dev_t _device = 0;
  ino_t _inode = 0;
};

} // namespace buttondriver::simulator
