#include "app/daemon.h"
#include "logging/message_handler.h"

#include <QCoreApplication>

int main(int argc, char **argv) {
  buttondriver::install_message_handler();
  QCoreApplication application(argc, argv);
  buttondriver::Daemon daemon;
  if (!daemon.start(QCoreApplication::arguments()))
    return 1;
  return QCoreApplication::exec();
}
