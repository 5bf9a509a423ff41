// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <sys/stat.h>
#include <vector>

namespace buttondriver {

/// A folder, and which one it is that has this path now.
struct FolderOnTheWay {
  std::string path; ///< absolute, without symbolic links
  dev_t device;
  ino_t inode;
};

bool operator==(const FolderOnTheWay &left, const FolderOnTheWay &right);

/// The folders in which the parts of `file` are found, from the root on, each once: whoever makes the path lead
/// elsewhere changes something in one of them. Symbolic links count with the folders that their targets lead through.
/// Ends at the first part that does not exist, or at the fortieth link. `file` is absolute.
std::vector<FolderOnTheWay> folders_on_the_way(const std::string &file);

} // namespace buttondriver
