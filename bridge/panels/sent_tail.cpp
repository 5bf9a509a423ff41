// SPDX-License-Identifier: Apache-2.0
#include "bridge/panels/sent_tail.h"

#include <algorithm>

namespace buttondriver::bridge {

void SentTail::left(qint64 bytes) {
  const auto has_not_left = [bytes](const auto &topic) { return topic.first > bytes; };
  _topics.erase(_topics.begin(), std::find_if(_topics.begin(), _topics.end(), has_not_left));
}

QVector<QByteArray> SentTail::take() {
  QVector<QByteArray> topics;
  for (const auto &topic : std::exchange(_topics, {}))
    topics.append(topic.second);
  return topics;
}

} // namespace buttondriver::bridge
