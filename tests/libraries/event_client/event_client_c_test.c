// SPDX-License-Identifier: Apache-2.0
#define _POSIX_C_SOURCE 200809L

#include "event_client/event_client.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

/* Calls every operation from C: "listening" with a server that takes everything, "refusing" with a closed port. */

/* 16 + 28 + 23 + 136 + 16 + 16 + 16 + 16 + 12 + 8: one frame of each operation, in the order of call_every_operation */
#define BYTES_OF_ALL_OPERATIONS 287

static int failures = 0;

static void expect(const char *what, long seen, long wanted) {
  if (seen == wanted)
    return;
  fprintf(stderr, "%s: %ld instead of %ld\n", what, seen, wanted);
  ++failures;
}

static int bind_a_port(struct sockaddr_in *address) {
  socklen_t size = sizeof *address;
  const int descriptor = socket(AF_INET, SOCK_STREAM, 0);
  memset(address, 0, sizeof *address);
  address->sin_family = AF_INET;
  address->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (descriptor == -1 || bind(descriptor, (const struct sockaddr *)address, size) != 0 ||
      getsockname(descriptor, (struct sockaddr *)address, &size) != 0) {
    perror("bind");
    exit(EXIT_FAILURE);
  }
  return descriptor;
}

static void call_every_operation(int32_t port, int sent) {
  uint8_t image[120];
  const uint8_t ping[4] = {0, 0, 0, 12};
  memset(image, 0xA5, sizeof image);
  expect("btc_set_server", btc_set_server("127.0.0.1", port), sent);
  expect("btc_connect", btc_connect(), sent);
  expect("btc_set_colour", btc_set_colour(5, 1, 2, 3), sent);
  expect("btc_set_colour_pair", btc_set_colour_pair(6, 1, 2, 3, 100, 4, 5, 6, 200), sent);
  expect("btc_set_text", btc_set_text(BTC_ALL_BUTTONS, "Hi", 9), sent);
  expect("btc_upload_image", btc_upload_image(23, image, (int32_t)sizeof image), sent);
  expect("btc_set_image", btc_set_image(7, 23), sent);
  expect("btc_set_value", btc_set_value(1, 2), sent);
  expect("btc_parameter_off", btc_parameter_off(), sent);
  expect("btc_verbose_on", btc_verbose_on(), sent);
  expect("btc_reconfig", btc_reconfig(), sent);
  expect("btc_send", btc_send(ping, sizeof ping), sent);
}

static void expect_all_bytes(int listener) {
  uint8_t bytes[BYTES_OF_ALL_OPERATIONS];
  const uint8_t first[8] = {0, 0, 0, 12, 0, 0, 0, 4};
  const uint8_t last[8] = {0, 0, 0, 4, 0, 0, 0, 12};
  const struct timeval limit = {10, 0};
  const int client = accept(listener, NULL, NULL);
  setsockopt(client, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
  expect("bytes received", (long)recv(client, bytes, sizeof bytes, MSG_WAITALL), BYTES_OF_ALL_OPERATIONS);
  expect("first frame", memcmp(bytes, first, sizeof first), 0);
  expect("last frame", memcmp(bytes + sizeof bytes - sizeof last, last, sizeof last), 0);
  close(client);
}

int main(int argc, char **argv) {
  struct sockaddr_in address;
  const int listening = argc == 2 && strcmp(argv[1], "listening") == 0;
  const int descriptor = bind_a_port(&address);
  if (listening && listen(descriptor, 1) != 0) {
    perror("listen");
    return EXIT_FAILURE;
  }
  call_every_operation(ntohs(address.sin_port), listening);
  if (listening)
    expect_all_bytes(descriptor);
  close(descriptor);
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
