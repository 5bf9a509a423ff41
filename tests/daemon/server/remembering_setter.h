// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttons/button_setter.h"

#include <QIODevice>

#include <chrono>
#include <cstddef>
#include <functional>
#include <vector>

namespace buttondriver::test {

/// Remembers what was delivered, and answers each message if told to.
class RememberingSetter : public ButtonSetter {
public:
  struct Call {
    std::vector<QByteArray> messages;
    qint32 client_id;
  };

  void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) override {
    calls.push_back({messages, client_id});
    delivered += messages.size();
    if (when_called)
      when_called();
    for (std::size_t i = 0; i < messages.size() && !answer.isEmpty(); ++i)
      reply->write(answer);
  }

  std::chrono::nanoseconds deviceTime(const QByteArray & /*message*/) const override { return device_time; }

  /// The messages of all calls so far.
  std::vector<QByteArray> messages() const {
    std::vector<QByteArray> all;
    for (const Call &call : calls)
      all.insert(all.end(), call.messages.begin(), call.messages.end());
    return all;
  }

  /// Forgets the calls so far.
  void forget() {
    calls.clear();
    delivered = 0;
  }

  std::vector<Call> calls;
  std::size_t delivered = 0;              ///< messages of all calls
  QByteArray answer;                      ///< to each message; empty: none
  std::chrono::nanoseconds device_time{}; ///< of each message
  std::function<void()> when_called;      ///< in each call, before it answers
};

} // namespace buttondriver::test
