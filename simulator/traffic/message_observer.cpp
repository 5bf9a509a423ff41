// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/message_observer.h"

#include "bytes/view_of.h"

#include <QDateTime>

namespace buttondriver::simulator {

void MessageObserver::process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) {
  const qint64 now = messages.empty() ? 0 : QDateTime::currentMSecsSinceEpoch();
  for (const QByteArray &message : messages) {
    // A copy of the beginning: sharing the whole would keep pictures alive for as long as the list.
    const QByteArray beginning(message.constData(),
                               static_cast<int>(qMin<qint64>(message.size(), MessageRecord::most_bytes)));
    _messages.add({now, client_id, message.size(), beginning});
    _texts.follow(view_of(message));
  }
  _next->process_messages(messages, reply, client_id);
}

void MessageObserver::forget() {
  _forgotten = _messages.last();
  _messages.clear();
  _texts.clear();
}

} // namespace buttondriver::simulator
