// SPDX-License-Identifier: Apache-2.0
/* Makes the panel read its brightness again. Built with cc, make and pkg-config, without CMake. */
#include <buttondriver/event_client/event_client.h>

#include <stdio.h>
#include <stdlib.h>

int main(int argc, char **argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: %s ADDRESS PORT\n", argv[0]);
    return EXIT_FAILURE;
  }
  if (!btc_set_server(argv[1], (int32_t)strtol(argv[2], NULL, 10)) || !btc_reconfig()) {
    fprintf(stderr, "no panel at %s port %s\n", argv[1], argv[2]);
    return EXIT_FAILURE;
  }
  puts("sent");
  return EXIT_SUCCESS;
}
