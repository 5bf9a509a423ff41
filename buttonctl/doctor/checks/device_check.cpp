// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/doctor/checks/device_check.h"

#include "buttonctl/doctor/checks/file_check.h"
#include "panel/registers/registers.h"

namespace buttondriver::buttonctl {

Finding check_device(const QString &root, const QString &user, const FileLook &look) {
  const QString name = QStringLiteral("device");
  const QString path = root + QLatin1String(panel::register_device_path);
  const FileFacts facts = look(path);
  if (facts.kind == FileFacts::Kind::missing)
    // Only the kernel knows the driver's numbers, so there is no node to be made by hand.
    return {name,
            QStringLiteral("there is no device node %1; the kernel's driver of the panel is not loaded").arg(path),
            QStringLiteral("udevadm trigger --action=add && udevadm settle && ls -l %1    # without a panel: "
                           "buttondriver-sim")
                .arg(shell_word(path))};
  if (const auto fault = fault_of_way(name, path, facts))
    return *fault;
  if (facts.kind != FileFacts::Kind::character_device)
    return {name, QStringLiteral("%1 is no device node").arg(path),
            QStringLiteral("mv -n %1 %2 && udevadm trigger --action=add")
                .arg(shell_word(path), shell_word(path + QLatin1String(".old")))};
  if (!facts.is_readable || !facts.is_writable)
    return {name, QStringLiteral("no permission to read and write %1").arg(path),
            // Not for everybody: who can write to the device can do more than the daemon lets anybody do.
            QStringLiteral("groupadd -rf fpga-reg && usermod -aG fpga-reg %1 && chgrp fpga-reg %2 && chmod 660 %2    "
                           "# counts from the next login, or the next start of the service")
                .arg(user.isEmpty() ? QStringLiteral("\"${SUDO_USER:-$USER}\"") : shell_word(user), shell_word(path))};
  return {name, path, {}};
}

} // namespace buttondriver::buttonctl
