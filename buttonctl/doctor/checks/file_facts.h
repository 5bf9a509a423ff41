// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <functional>

namespace buttondriver::buttonctl {

/// What one finds when looking at a path.
struct FileFacts {
  enum class Kind {
    missing,
    regular,
    folder,
    character_device,
    other,
  };

  Kind kind = Kind::missing;
  bool is_readable = false; ///< by this process
  bool is_writable = false;
};

/// How to look: the system's own way, or one that a test makes up.
using FileLook = std::function<FileFacts(const QString &path)>;

/// Asks the system; links are followed.
FileFacts look_at_file(const QString &path);

} // namespace buttondriver::buttonctl
