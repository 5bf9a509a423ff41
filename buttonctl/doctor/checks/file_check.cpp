// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/file_check.h"

namespace buttondriver::buttonctl {

std::optional<Finding> fault_of_way(const QString &name, const QString &path, const FileFacts &facts) {
  if (facts.kind == FileFacts::Kind::hidden)
    return Finding{name, QStringLiteral("no permission to look for %1").arg(path),
                   QStringLiteral("namei -m %1    # shows the folder that keeps you out").arg(shell_word(path))};
  if (!facts.barrier.isEmpty())
    return Finding{name, QStringLiteral("no permission to enter %1, on the way to %2").arg(facts.barrier, path),
                   QStringLiteral("chmod a+x ") + shell_word(facts.barrier)};
  return std::nullopt;
}

std::optional<Finding> fault_of_file(const QString &name, const QString &path, const FileFacts &facts) {
  if (facts.kind == FileFacts::Kind::missing)
    return std::nullopt;
  if (auto fault = fault_of_way(name, path, facts))
    return fault;
  if (facts.kind != FileFacts::Kind::regular)
    return Finding{name, QStringLiteral("%1 is no file").arg(path),
                   QStringLiteral("mv -n %1 %2").arg(shell_word(path), shell_word(path + QLatin1String(".old")))};
  if (!facts.is_readable)
    return Finding{name, QStringLiteral("no permission to read %1").arg(path),
                   QStringLiteral("chmod a+r ") + shell_word(path)};
  return std::nullopt;
}

} // namespace buttondriver::buttonctl
