// SPDX-License-Identifier: Apache-2.0
/* Says hello on a screen, and shows the rest of what a panel can do. */
#include <buttondriver/c_client/client.h>

#include <stdio.h>
#include <stdlib.h>

/* A BMP file of 2 x 2 pixels: its header, then two rows from the bottom up, each padded to 8 bytes. */
static const unsigned char picture[70] = {
    'B', 'M', 70, 0,   0,   0,   0, 0, 0, 0, 54,  0, 0,   0,        /* where the pixels begin */
    40,  0,   0,  0,   2,   0,   0, 0, 2, 0, 0,   0, 1,   0, 24, 0, /* columns, rows, bits a pixel */
    0,   0,   0,  0,   16,  0,   0, 0, 0, 0, 0,   0, 0,   0, 0,  0, /* bytes of the pixels */
    0,   0,   0,  0,   0,   0,   0, 0,                              /* what nobody reads */
    255, 0,   0,  255, 255, 255, 0, 0, 0, 0, 255, 0, 255, 0, 0,  0};

/* Tells about a call, and ends the program when it has failed. */
static void require(const char *call, buttondriver_result result) {
  if (result != BUTTONDRIVER_OK) {
    fprintf(stderr, "%s: %s\n", call, buttondriver_error_text(result));
    exit(EXIT_FAILURE);
  }
  printf("%s: done\n", call);
}

int main(int argc, char **argv) {
  buttondriver_client panel;
  double milliseconds;

  if (argc != 3) {
    fprintf(stderr, "usage: %s ADDRESS PORT\n", argv[0]);
    return EXIT_FAILURE;
  }
  if (buttondriver_open(&panel, argv[1], (int32_t)strtol(argv[2], NULL, 10), 3000) != BUTTONDRIVER_OK) {
    fprintf(stderr, "no panel at %s port %s\n", argv[1], argv[2]);
    return EXIT_FAILURE;
  }
  require("text", buttondriver_text(&panel, 0, 0, "Hello, panel"));
  require("part of it in red", buttondriver_text_part(&panel, 0, 0, 7, 5, "panel", 0xFF0000, BUTTONDRIVER_BLACK));
  require("picture", buttondriver_picture(&panel, 1, 63, 63, picture, sizeof picture));
  require("LED of button 5", buttondriver_led(&panel, 5, BUTTONDRIVER_ON));
  require("blinking of button 6", buttondriver_led_blink(&panel, 6, 500));
  require("status LED 0", buttondriver_status(&panel, 0, BUTTONDRIVER_ON));
  require("toggle indicator 1", buttondriver_toggle(&panel, 1, BUTTONDRIVER_ON));

  /* Mistakes are found before anything is sent. */
  printf("button 24: %s\n", buttondriver_error_text(buttondriver_led(&panel, 24, BUTTONDRIVER_ON)));

  /* The answer says that the daemon has accepted all of this. */
  require("ping", buttondriver_ping(&panel, 3000, &milliseconds));
  buttondriver_close(&panel);
  return EXIT_SUCCESS;
}
