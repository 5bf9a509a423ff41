// SPDX-License-Identifier: Apache-2.0
// Writes a text line on all screens and lets the LED of a button blink.
#include <buttondriver/protocol/encoders.h>
#include <buttondriver/qt_client/q_button_driver_client.h>

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 3) {
    std::fprintf(stderr, "usage: %s HOST PORT\n", argv[0]);
    return 1;
  }
  buttondriver::QButtonDriverClient panel(arguments[1], arguments[2].toUShort());
  if (!panel.waitForConnected(3000)) {
    std::fprintf(stderr, "no panel at %s port %s\n", argv[1], argv[2]);
    return 1;
  }

  constexpr int all_screens = -1;
  panel.msg(buttondriver::hton_BMS_TFTTextLine(all_screens, 0, QStringLiteral("Ready"), 1));

  // Several messages at once, in this order.
  const std::vector<QByteArray> messages{buttondriver::hton_BMS_SetLEDState(5, -1, 250),
                                         buttondriver::hton_BMS_SetLEDStatusIndicator(0, 1)};
  panel.msg(messages);

  // Messages leave in the event loop. A program that has none, or that ends, waits for them.
  while (panel.waitForBytesWritten(1000)) {
  }
  std::puts("sent");
  return 0;
}
