// SPDX-License-Identifier: Apache-2.0
#include "fleet/running/publisher.h"

#include <mosquitto.h>
#include <stdexcept>

namespace buttondriver::fleet {

namespace {

constexpr std::chrono::seconds connection_limit{20};

} // namespace

Publisher::Publisher(std::uint16_t port) : _client((mosquitto_lib_init(), mosquitto_new(nullptr, true, this))) {
  mosquitto_connect_callback_set(_client, [](mosquitto *, void *self, int result) {
    auto &publisher = *static_cast<Publisher *>(self);
    const std::lock_guard lock(publisher._mutex);
    publisher._is_connected = result == 0;
    publisher._changed.notify_all();
  });
  mosquitto_publish_callback_set(_client, [](mosquitto *, void *self, int) {
    auto &publisher = *static_cast<Publisher *>(self);
    const std::lock_guard lock(publisher._mutex);
    ++publisher._confirmed;
    publisher._changed.notify_all();
  });
  mosquitto_reconnect_delay_set(_client, 1, 1, false);
  // As many unconfirmed ones as there are.
  mosquitto_int_option(_client, MOSQ_OPT_SEND_MAXIMUM, 0);
  mosquitto_max_inflight_messages_set(_client, 0);
  mosquitto_int_option(_client, MOSQ_OPT_TCP_NODELAY, 1);
  const bool is_started = mosquitto_connect_async(_client, "127.0.0.1", port, 60) == MOSQ_ERR_SUCCESS &&
                          mosquitto_loop_start(_client) == MOSQ_ERR_SUCCESS;
  std::unique_lock lock(_mutex);
  if (!is_started || !_changed.wait_for(lock, connection_limit, [this] { return _is_connected; }))
    throw std::runtime_error("there is no connection to the broker");
}

Publisher::~Publisher() {
  mosquitto_disconnect(_client);
  mosquitto_loop_stop(_client, false);
  mosquitto_destroy(_client);
  mosquitto_lib_cleanup();
}

void Publisher::publish(const std::string &topic, const std::string &payload) {
  // Without a connection it is kept until there is one, whatever is returned then.
  const int result =
      mosquitto_publish(_client, nullptr, topic.c_str(), static_cast<int>(payload.size()), payload.data(), 1, true);
  if (result != MOSQ_ERR_SUCCESS && result != MOSQ_ERR_NO_CONN && result != MOSQ_ERR_CONN_LOST)
    throw std::runtime_error(std::string("cannot publish: ") + mosquitto_strerror(result));
  ++_published;
}

bool Publisher::waitUntilConfirmed(std::chrono::seconds limit) {
  std::unique_lock lock(_mutex);
  return _changed.wait_for(lock, limit, [this] { return _confirmed >= _published; });
}

} // namespace buttondriver::fleet
