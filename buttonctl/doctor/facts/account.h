// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

#include <sys/types.h>
#include <vector>

namespace buttondriver::buttonctl {

/// Somebody whose permissions are asked about.
struct Account {
  QString name;
  uid_t user = 0;
  std::vector<gid_t> groups; ///< the user's own one, and those that name the user as a member
};

/// Whom a file belongs to, and its mode as stat(2) has it.
struct Permissions {
  uid_t owner;
  gid_t group;
  mode_t mode;
};

/// Reads the account from /etc/passwd and /etc/group under the folder `root`, which is empty for the system's own root.
Outcome<Account> find_account(const QString &root, const QString &name);

/// Whether owner, group and mode let the account do `access`: one of R_OK, W_OK, X_OK. To the superuser all is allowed.
bool may(const Account &account, const Permissions &permissions, int access);

} // namespace buttondriver::buttonctl
