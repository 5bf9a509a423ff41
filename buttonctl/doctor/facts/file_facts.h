// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/facts/account.h"

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
    hidden, ///< a folder above it may not be entered by this process, so that nothing is known
  };

  Kind kind = Kind::missing;
  bool is_readable = false; ///< by the account that is asked about, or by this process
  bool is_writable = false;
  QString barrier; ///< the folder above it that the account may not enter; empty when there is none, or it is unknown
};

/// How to look: the system's own way, or one that a test makes up.
using FileLook = std::function<FileFacts(const QString &path)>;

/// Asks the system what this process may do; links are followed.
FileFacts look_at_file(const QString &path);

/// Works out from owners and modes what `account` may do; links are followed. Access control lists and capabilities are
/// not looked at.
FileFacts look_at_file_as(const Account &account, const QString &path);

} // namespace buttondriver::buttonctl
