// SPDX-License-Identifier: Apache-2.0
/* Says hello on a screen, lights a button's LED, and shows which requests the client sends. */
#include <buttondriver/c_client/messages.h>
#include <buttondriver/event_client/event_client.h>

#include <stdio.h>
#include <stdlib.h>

static void tell(const char *request, int sent) { printf("%s: %s\n", request, sent ? "sent" : "not sent"); }

int main(int argc, char **argv) {
  /* Room for messages that the client knows nothing of. */
  unsigned char room[64];
  buttondriver_message message = {room, sizeof room, 0};
  /* A vertical line in the middle: 24 rows of 40 pixels. */
  unsigned char image[120] = {0};
  int row;
  for (row = 0; row < 24; ++row)
    image[row * 5 + 2] = 0x18;

  if (argc != 3) {
    fprintf(stderr, "usage: %s ADDRESS PORT\n", argv[0]);
    return EXIT_FAILURE;
  }
  if (!btc_set_server(argv[1], (int32_t)strtol(argv[2], NULL, 10))) {
    fprintf(stderr, "no panel at %s port %s\n", argv[1], argv[2]);
    return EXIT_FAILURE;
  }
  if (buttondriver_encode_text(&message, 0, 0, "Hello, panel") == BUTTONDRIVER_OK)
    tell("text", btc_send(message.bytes, (uint32_t)message.size));
  if (buttondriver_encode_led(&message, 5, BUTTONDRIVER_ON) == BUTTONDRIVER_OK)
    tell("LED of button 5", btc_send(message.bytes, (uint32_t)message.size));

  /* The client remembers what it has asked for. (This panel's daemon knows no colours, and logs them as unhandled.) */
  tell("colour of button 3", btc_set_colour(3, 255, 128, 0));
  tell("the same colour again", btc_set_colour(3, 255, 128, 0));
  tell("image 7", btc_upload_image(7, image, sizeof image));
  tell("brightness", btc_reconfig());
  return EXIT_SUCCESS;
}
