// SPDX-License-Identifier: Apache-2.0
// The least that a program can be that gets the messages of panels from a broker: it subscribes with libmosquitto, and
// does nothing with what comes but to note how old it is.
//
//   buttondriver_bare_subscriber PORT
//
// It prints "ready" when it has subscribed. After SIGTERM it prints the number of messages, and of those with a stamp
// the median, the 99th percentile and the longest of their ages, in seconds.

#include "fleet/panels/delays.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <mosquitto.h>
#include <string_view>
#include <vector>

namespace {

volatile std::sig_atomic_t is_ended = 0;

struct Seen {
  std::size_t messages = 0;
  std::vector<std::int64_t> ages;
};

void note(mosquitto *, void *seen, const mosquitto_message *message) {
  auto &all = *static_cast<Seen *>(seen);
  ++all.messages;
  const std::string_view payload(static_cast<const char *>(message->payload),
                                 static_cast<std::size_t>(message->payloadlen));
  if (const auto age = buttondriver::fleet::age_of(payload))
    all.ages.push_back(*age);
}

} // namespace

int main(int argc, char **argv) {
  std::signal(SIGTERM, [](int) { is_ended = 1; });
  if (argc != 2)
    return 2;
  mosquitto_lib_init();
  Seen seen;
  mosquitto *const client = mosquitto_new(nullptr, true, &seen);
  // As the bridge does, so that the broker drops nothing.
  mosquitto_int_option(client, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
  mosquitto_int_option(client, MOSQ_OPT_RECEIVE_MAXIMUM, 65535);
  mosquitto_message_callback_set(client, note);
  mosquitto_connect_callback_set(
      client, [](mosquitto *self, void *, int) { mosquitto_subscribe(self, nullptr, "buttondriver/#", 1); });
  mosquitto_subscribe_callback_set(client, [](mosquitto *, void *, int, int, const int *) {
    std::puts("ready");
    std::fflush(stdout);
  });
  if (mosquitto_connect(client, "127.0.0.1", std::atoi(argv[1]), 60) != MOSQ_ERR_SUCCESS)
    return 1;
  while (!is_ended)
    if (mosquitto_loop(client, 100, 1) != MOSQ_ERR_SUCCESS)
      return 1;
  const auto delays = buttondriver::fleet::delays_of(seen.ages);
  std::printf("%zu %.9f %.9f %.9f\n", seen.messages, delays.median, delays.p99, delays.longest);
  mosquitto_destroy(client);
  mosquitto_lib_cleanup();
  return 0;
}
