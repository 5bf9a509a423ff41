// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/runner.h"

#include <QCoreApplication>
#include <QtGlobal>
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTextCodec>
#endif

namespace {

/// Parts of Qt report through it what the tool prints in its own line.
void drop_message(QtMsgType, const QMessageLogContext &, const QString &) {}

} // namespace

int main(int argc, char **argv) {
  qInstallMessageHandler(drop_message);
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
  // Arguments and file names are UTF-8 in every locale, as Qt 6 has it.
  QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
  const QCoreApplication application(argc, argv);
  return buttondriver::buttonctl::run(QCoreApplication::arguments().mid(1));
}
