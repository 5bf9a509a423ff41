// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/doctor.h"
#include "support/test_root.h"

#include <string>
#include <vector>

namespace buttondriver::test {

/// The findings as the program prints them, the folder of the test as ROOT.
inline std::string shown_in(const TestRoot &root, const std::vector<buttonctl::Finding> &findings) {
  QString text;
  for (const buttonctl::Finding &finding : findings)
    text += buttonctl::shown(finding) + QLatin1Char('\n');
  return text.replace(root.path(), QStringLiteral("ROOT")).toStdString();
}

/// Looks at files as the system does, but for one.
inline buttonctl::FileLook all_but(const QString &path, const buttonctl::FileFacts &facts) {
  return [path, facts](const QString &asked) { return asked == path ? facts : buttonctl::look_at_file(asked); };
}

} // namespace buttondriver::test
