// SPDX-License-Identifier: Apache-2.0
/* Does everything that a panel can do, from C, and asks at the end whether it has been accepted.
   Usage: c_client_c_test ADDRESS PORT */
#include "c_client/client.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* 2 x 2 pixels. From the bottom: blue and white, red and green; each row is padded by two bytes. */
static const uint8_t picture[70] = {
    'B', 'M', 70, 0,   0,   0,   0, 0, 0, 0, 54,  0, 0,   0, /* file: its size, where the pixels begin */
    40,  0,   0,  0,   2,   0,   0, 0, 2, 0, 0,   0, 1,   0, 24, 0,
    0,   0,   0,  0, /* 2 columns, 2 rows, 1 plane, 24 bits */
    16,  0,   0,  0,   0,   0,   0, 0, 0, 0, 0,   0, 0,   0, 0,  0,
    0,   0,   0,  0, /* bytes of the pixels, and what nobody reads */
    255, 0,   0,  255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0,  0};

static int failures = 0;

static void expect_ok(const char *what, buttondriver_result result) {
  if (result == BUTTONDRIVER_OK)
    return;
  fprintf(stderr, "%s: %s\n", what, buttondriver_error_text(result));
  ++failures;
}

static void drive(buttondriver_client *panel) {
  uint8_t image[BUTTONDRIVER_IMAGE_BYTES];
  uint8_t room[BUTTONDRIVER_LARGEST_FIXED_MESSAGE];
  buttondriver_message message = {room, sizeof room, 0};
  double milliseconds = -1;
  memset(image, 0xA5, sizeof image);

  expect_ok("blackout", buttondriver_blackout(panel, BUTTONDRIVER_ALL_SCREENS));
  expect_ok("text", buttondriver_text(panel, 0, 0, "Hello, panel"));
  expect_ok("text_inverse", buttondriver_text_inverse(panel, 2, 1, "Inverse"));
  expect_ok("text_part", buttondriver_text_part(panel, 0, 0, 7, 5, "world", UINT32_C(0xFF0000), BUTTONDRIVER_BLACK));
  expect_ok("picture", buttondriver_picture(panel, 1, 10, 20, picture, sizeof picture));
  expect_ok("led", buttondriver_led(panel, BUTTONDRIVER_ALL_BUTTONS, BUTTONDRIVER_ON));
  expect_ok("led", buttondriver_led(panel, 5, BUTTONDRIVER_OFF));
  expect_ok("led_blink", buttondriver_led_blink(panel, 7, 250));
  expect_ok("status", buttondriver_status(panel, 31, BUTTONDRIVER_ON));
  expect_ok("toggle", buttondriver_toggle(panel, 1, BUTTONDRIVER_ON));
  expect_ok("image", buttondriver_image(panel, 23, image, sizeof image));
  expect_ok("reconfig", buttondriver_reconfig(panel));
  expect_ok("null", buttondriver_null(panel));
  expect_ok("encode_status", buttondriver_encode_status(&message, 30, BUTTONDRIVER_ON));
  expect_ok("send", buttondriver_send(panel, &message));
  expect_ok("ping", buttondriver_ping(panel, 20000, &milliseconds));
  if (milliseconds < 0) {
    fputs("ping: no time\n", stderr);
    ++failures;
  }
}

int main(int argc, char **argv) {
  buttondriver_client panel;
  if (argc != 3)
    return EXIT_FAILURE;
  expect_ok("open", buttondriver_open(&panel, argv[1], (int32_t)strtol(argv[2], NULL, 10), 20000));
  if (buttondriver_is_open(&panel))
    drive(&panel);
  buttondriver_close(&panel);
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
