// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/facts/account.h"

#include <QByteArray>
#include <QFile>

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

// The fields of a line of the two files.
constexpr int name_field = 0;
constexpr int id_field = 2;
constexpr int own_group_field = 3;
constexpr int members_field = 3;

std::vector<QList<QByteArray>> lines_of(const QString &path) {
  std::vector<QList<QByteArray>> lines;
  QFile file(path);
  if (file.open(QIODevice::ReadOnly))
    for (const QByteArray &line : file.readAll().split('\n'))
      if (line.count(':') >= own_group_field)
        lines.push_back(line.split(':'));
  return lines;
}

} // namespace

Outcome<Account> find_account(const QString &root, const QString &name) {
  const QString accounts = root + QLatin1String("/etc/passwd");
  const QByteArray searched = name.toUtf8();
  Account account{name, 0, {}};
  bool is_known = false;
  for (const QList<QByteArray> &line : lines_of(accounts)) {
    bool has_user = false;
    bool has_group = false;
    const uid_t user = line[id_field].toUInt(&has_user);
    const gid_t group = line[own_group_field].toUInt(&has_group);
    if (is_known || line[name_field] != searched || !has_user || !has_group)
      continue;
    is_known = true;
    account.user = user;
    account.groups.push_back(group);
  }
  if (!is_known)
    return Failure{QStringLiteral("there is no user '%1' in %2").arg(name, accounts)};
  for (const QList<QByteArray> &line : lines_of(root + QLatin1String("/etc/group"))) {
    bool has_id = false;
    const gid_t group = line[id_field].toUInt(&has_id);
    if (has_id && line[members_field].split(',').contains(searched))
      account.groups.push_back(group);
  }
  return account;
}

bool may(const Account &account, const Permissions &permissions, int access) {
  constexpr int bits_of_a_class = 3;
  if (account.user == 0)
    return true;
  // The first class that fits decides, even when a later one would allow more.
  int shift = 0;
  if (permissions.owner == account.user)
    shift = 2 * bits_of_a_class;
  else if (std::find(account.groups.begin(), account.groups.end(), permissions.group) != account.groups.end())
    shift = bits_of_a_class;
  return (permissions.mode >> shift & static_cast<mode_t>(access)) != 0;
}

} // namespace buttondriver::buttonctl
