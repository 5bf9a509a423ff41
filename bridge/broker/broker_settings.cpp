// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/broker_settings.h"

#include <tuple>

namespace buttondriver::bridge {

namespace {

auto all_of(const BrokerSettings &settings) {
  return std::tie(settings.host, settings.port, settings.is_mqtt_5, settings.client_id, settings.user,
                  settings.password, settings.has_tls, settings.ca_file, settings.cert_file, settings.key_file,
                  settings.keep_alive_seconds, settings.will_topic, settings.will_payload);
}

} // namespace

bool BrokerSettings::operator==(const BrokerSettings &other) const { return all_of(*this) == all_of(other); }

} // namespace buttondriver::bridge
