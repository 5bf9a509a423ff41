// SPDX-License-Identifier: Apache-2.0
// Builds messages and prints their bytes, for a program that sends them by its own means.
#include <buttondriver/protocol/encoders.h>

#include <cstdio>

static void print_bytes(const char *name, const QByteArray &message) {
  std::printf("%s\n  %s\n", name, message.toHex(' ').constData());
}

int main() {
  print_bytes("LED 5 blinks, 500 ms", buttondriver::hton_BMS_SetLEDState(5, -1, 500));
  print_bytes("text on screen 0, line 2", buttondriver::hton_BMS_TFTTextLine(0, 2, QStringLiteral("Ready"), 1));
  print_bytes("black screens", buttondriver::hton_BMS_BlackoutScreen(-1));

  // One message for each image and one that names them all; here the last one.
  const QByteArray image(120, '\x55');
  const auto animation = buttondriver::hton_BMS_SetButtonAnimation(3, {image, image}, 30, 1, 2);
  print_bytes("animation on button 3", animation.back());
  return 0;
}
