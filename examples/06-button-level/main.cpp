// SPDX-License-Identifier: Apache-2.0
// Makes the screens half as bright in the level file; the daemon follows at the next BMS_Reconfig.
#include <buttondriver/buttonlevel/buttonlevel.h>

#include <cstdio>

static void tell(const char *when, const QStringList &levels) {
  std::printf("%s: lcd %s, scr %s\n", when, qPrintable(levels[0]), qPrintable(levels[1]));
}

int main(int argc, char **argv) {
  const std::string path = argc > 1 ? argv[1] : buttondriver::buttonlevel_path();
  QStringList levels{QStringLiteral("100"), QStringLiteral("100")};
  if (!buttondriver::readButtonlevelFile(levels, path))
    return 1;
  tell("before", levels);
  levels[1] = QString::number(levels[1].toInt() / 2);
  buttondriver::writeButtonlevelFile(levels, path);
  if (!buttondriver::readButtonlevelFile(levels, path))
    return 1;
  tell("after", levels);
  return 0;
}
