// SPDX-License-Identifier: Apache-2.0
#include "bridge/broker/refusals.h"

#include "logging/log_line.h"

#include <QString>

#include <utility>

namespace buttondriver::bridge {

void Refusals::take(const QByteArray &topic, int code) {
  if (_topics.contains(topic))
    return;
  if (_topics.size() < most_topics) {
    _topics += topic;
    critical_line() << "The broker refuses the publication of" << QString::fromUtf8(topic) << "with code" << code;
  } else if (!std::exchange(_are_more, true)) {
    critical_line() << "The broker refuses more publications, which are not logged";
  }
}

} // namespace buttondriver::bridge
