// SPDX-License-Identifier: Apache-2.0
// Writes a text line on all screens and lets the LED of a button blink. Never waits: a window would stay alive while
// the panel is away.
#include <buttondriver/protocol/encoders.h>
#include <buttondriver/qt_client/q_button_driver_client.h>

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

using buttondriver::QButtonDriverClient;

/// What is to stand on the panel, whenever there is a new connection to it.
static void show(QButtonDriverClient &panel) {
  constexpr int all_screens = -1;
  panel.msg(buttondriver::hton_BMS_TFTTextLine(all_screens, 0, QStringLiteral("Ready"), 1));

  // Several messages at once, in this order.
  const std::vector<QByteArray> messages{buttondriver::hton_BMS_SetLEDState(5, -1, 250),
                                         buttondriver::hton_BMS_SetLEDStatusIndicator(0, 1)};
  panel.msg(messages);
}

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 3) {
    std::fprintf(stderr, "usage: %s HOST PORT\n", argv[0]);
    return 1;
  }
  QButtonDriverClient panel(arguments[1], arguments[2].toUShort());
  panel.setConnectWait(0);
  QObject::connect(&panel, &QButtonDriverClient::dropped,
                   [](int count) { std::fprintf(stderr, "%d messages dropped\n", count); });
  QObject::connect(&panel, &QButtonDriverClient::connectionChanged, [&panel](bool is_connected) {
    if (!is_connected)
      return;
    show(panel);
    // Messages leave in the event loop. A program that ends waits for them.
    while (panel.waitForBytesWritten(1000)) {
    }
    std::puts("sent");
    QCoreApplication::quit();
  });

  // A panel that is switched on later is found too.
  QTimer attempts;
  QObject::connect(&attempts, &QTimer::timeout, &panel, &QButtonDriverClient::connectToServer);
  attempts.start(200);

  // This program has nothing else to do, so it gives up some time.
  QTimer::singleShot(3000, &panel, [argv] {
    std::fprintf(stderr, "no panel at %s port %s\n", argv[1], argv[2]);
    QCoreApplication::exit(1);
  });
  return QCoreApplication::exec();
}
