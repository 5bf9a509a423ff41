// SPDX-License-Identifier: Apache-2.0
#include <QCoreApplication>
#include <QtGlobal>

#include <gtest/gtest.h>

int main(int argc, char **argv) {
  // Whoever has a panel may name it in the shell; no test may talk to that one, nor a program that a test starts.
  for (const char *variable : {"BUTTONDRIVER_HOST", "BUTTONDRIVER_PORT", "BUTTONDRIVER_PANEL"})
    qunsetenv(variable);
  QCoreApplication application(argc, argv);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
