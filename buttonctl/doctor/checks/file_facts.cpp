// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/file_facts.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver::buttonctl {

namespace {

FileFacts::Kind kind_of(mode_t mode) {
  if (S_ISREG(mode))
    return FileFacts::Kind::regular;
  if (S_ISDIR(mode))
    return FileFacts::Kind::folder;
  if (S_ISCHR(mode))
    return FileFacts::Kind::character_device;
  return FileFacts::Kind::other;
}

bool is_allowed(const QByteArray &name, int access) {
  return ::faccessat(AT_FDCWD, name.constData(), access, AT_EACCESS) == 0;
}

} // namespace

FileFacts look_at_file(const QString &path) {
  const QByteArray name = QFile::encodeName(path);
  struct stat status = {};
  if (::stat(name.constData(), &status) != 0)
    return {};
  return {kind_of(status.st_mode), is_allowed(name, R_OK), is_allowed(name, W_OK)};
}

} // namespace buttondriver::buttonctl
