// SPDX-License-Identifier: Apache-2.0
#include "fleet/running/topic_watch.h"

#include <mosquitto.h>
#include <stdexcept>
#include <string_view>

namespace buttondriver::fleet {

TopicWatch::TopicWatch(std::uint16_t port, const std::unordered_map<std::string, std::string> &topics)
    : _missing(topics), _client((mosquitto_lib_init(), mosquitto_new(nullptr, true, this))) {
  mosquitto_connect_callback_set(_client, [](mosquitto *client, void *, int) {
    // A broker drops nothing of what needs no acknowledgement, however much it keeps.
    mosquitto_subscribe(client, nullptr, "buttondriver/#", 0);
  });
  mosquitto_message_callback_set(_client, [](mosquitto *, void *self, const mosquitto_message *message) {
    auto &watch = *static_cast<TopicWatch *>(self);
    const std::lock_guard lock(watch._mutex);
    const auto missing = watch._missing.find(message->topic);
    const std::string_view payload(static_cast<const char *>(message->payload),
                                   static_cast<std::size_t>(message->payloadlen));
    if (missing == watch._missing.end() || missing->second != payload)
      return;
    watch._missing.erase(missing);
    if (watch._missing.empty())
      watch._changed.notify_all();
  });
  if (mosquitto_connect(_client, "127.0.0.1", port, 60) != MOSQ_ERR_SUCCESS ||
      mosquitto_loop_start(_client) != MOSQ_ERR_SUCCESS)
    throw std::runtime_error("there is no connection to the broker");
}

TopicWatch::~TopicWatch() {
  mosquitto_disconnect(_client);
  mosquitto_loop_stop(_client, false);
  mosquitto_destroy(_client);
  mosquitto_lib_cleanup();
}

std::unordered_map<std::string, std::string> TopicWatch::missingAfter(std::chrono::seconds limit) {
  std::unique_lock lock(_mutex);
  _changed.wait_for(lock, limit, [this] { return _missing.empty(); });
  return _missing;
}

} // namespace buttondriver::fleet
