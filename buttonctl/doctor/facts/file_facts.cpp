// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/facts/file_facts.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
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

/// False when there is nothing, or when it may not be looked at; `facts` then tells which.
bool find_kind(const QByteArray &name, struct stat &status, FileFacts &facts) {
  if (::stat(name.constData(), &status) == 0) {
    facts.kind = kind_of(status.st_mode);
    return true;
  }
  facts.kind = errno == EACCES ? FileFacts::Kind::hidden : FileFacts::Kind::missing;
  return false;
}

bool is_allowed(const QByteArray &name, int access) {
  return ::faccessat(AT_FDCWD, name.constData(), access, AT_EACCESS) == 0;
}

/// The topmost of the folders above `path`, which has no links, that the account may not enter; empty for none.
QString barrier_above(const Account &account, const QString &path) {
  for (auto end = path.indexOf(QLatin1Char('/'), 1); end != -1; end = path.indexOf(QLatin1Char('/'), end + 1)) {
    struct stat status = {};
    QString folder = path.left(end);
    if (::stat(QFile::encodeName(folder).constData(), &status) == 0 &&
        !may(account, {status.st_uid, status.st_gid, status.st_mode}, X_OK))
      return folder;
  }
  return {};
}

} // namespace

FileFacts look_at_file(const QString &path) {
  const QByteArray name = QFile::encodeName(path);
  struct stat status = {};
  FileFacts facts;
  if (!find_kind(name, status, facts))
    return facts;
  facts.is_readable = is_allowed(name, R_OK);
  facts.is_writable = is_allowed(name, W_OK);
  return facts;
}

FileFacts look_at_file_as(const Account &account, const QString &path) {
  struct stat status = {};
  FileFacts facts;
  if (!find_kind(QFile::encodeName(path), status, facts))
    return facts;
  facts.barrier = barrier_above(account, path);
  if (facts.barrier.isEmpty())
    facts.barrier = barrier_above(account, QFileInfo(path).canonicalFilePath());
  const Permissions permissions{status.st_uid, status.st_gid, status.st_mode};
  facts.is_readable = facts.barrier.isEmpty() && may(account, permissions, R_OK);
  facts.is_writable = facts.barrier.isEmpty() && may(account, permissions, W_OK);
  return facts;
}

} // namespace buttondriver::buttonctl
