# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
cat >main.cpp <<'PROGRAM'
#include <buttondriver/qt_client/q_button_driver_client.h>

#include <QCoreApplication>

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  const buttondriver::QButtonDriverClient client;
}
PROGRAM
