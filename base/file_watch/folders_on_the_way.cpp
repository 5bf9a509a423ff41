// SPDX-License-Identifier: Apache-2.0
#include "file_watch/folders_on_the_way.h"

#include <algorithm>
#include <climits>
#include <sstream>
#include <unistd.h>

namespace buttondriver {

namespace {

/// As many as the kernel follows.
constexpr int most_links = 40;

/// Puts the parts of `path` in front of `parts`, whose last one comes first.
void put_in_front(std::vector<std::string> &parts, const std::string &path) {
  std::vector<std::string> further;
  std::istringstream text(path);
  for (std::string part; std::getline(text, part, '/');)
    if (!part.empty() && part != ".")
      further.push_back(part);
  parts.insert(parts.end(), further.rbegin(), further.rend());
}

std::string target_of(const std::string &link) {
  char target[PATH_MAX];
  const ssize_t size = ::readlink(link.c_str(), target, sizeof target);
  return size > 0 ? std::string(target, static_cast<std::size_t>(size)) : std::string();
}

std::string parent_of(const std::string &folder) {
  return folder.substr(0, std::max<std::size_t>(folder.rfind('/'), 1));
}

void add(std::vector<FolderOnTheWay> &folders, const std::string &path, const struct stat &status) {
  const FolderOnTheWay folder{path, status.st_dev, status.st_ino};
  if (std::find(folders.begin(), folders.end(), folder) == folders.end())
    folders.push_back(folder);
}

} // namespace

bool operator==(const FolderOnTheWay &left, const FolderOnTheWay &right) {
  return left.path == right.path && left.device == right.device && left.inode == right.inode;
}

std::vector<FolderOnTheWay> folders_on_the_way(const std::string &file) {
  std::vector<FolderOnTheWay> folders;
  std::vector<std::string> parts;
  put_in_front(parts, file);
  std::string folder = "/";
  struct stat status {};
  if (::lstat("/", &status) == 0)
    add(folders, folder, status);
  for (int links = 0; !parts.empty();) {
    const std::string part = parts.back();
    parts.pop_back();
    if (part == "..") {
      folder = parent_of(folder);
      continue;
    }
    const std::string path = (folder == "/" ? "" : folder) + '/' + part;
    if (::lstat(path.c_str(), &status) != 0)
      break;
    if (S_ISLNK(status.st_mode)) {
      if (++links > most_links)
        break;
      const std::string target = target_of(path);
      if (!target.empty() && target.front() == '/')
        folder = "/";
      put_in_front(parts, target);
    } else if (parts.empty() || !S_ISDIR(status.st_mode)) {
      break;
    } else {
      folder = path;
      add(folders, folder, status);
    }
  }
  return folders;
}

} // namespace buttondriver
