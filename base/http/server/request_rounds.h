// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_client.h"

#include <functional>
#include <vector>

namespace buttondriver {

/// Answers equal requests together, so that however many come, the work for one answer at most goes on at a time:
/// requests that come meanwhile wait for the next round. What a round answers is thus never older than its requests.
/// Clients that go do not count any more. Lives on the server's thread.
class RequestRounds {
public:
  /// Whether somebody still waits for the answer of the round that goes on.
  using IsWanted = std::function<bool()>;
  /// Ends the round, once, on the server's thread and while the rounds live, with the answer to all of its clients.
  using Answer = std::function<void(const HttpAnswer &)>;
  /// Begins to make an answer.
  using Work = std::function<void(const IsWanted &is_wanted, const Answer &answer)>;

  explicit RequestRounds(Work work) : _work(std::move(work)) {}
  RequestRounds(const RequestRounds &) = delete;
  RequestRounds &operator=(const RequestRounds &) = delete;

  void add(const HttpClient &client);
  /// Clients that wait for the round after the one that goes on.
  std::size_t waiting() const { return _waiting.size(); }

private:
  void start();
  void finish(const HttpAnswer &answer);

  Work _work;
  bool _goes_on = false;
  std::vector<HttpClient> _served;
  std::vector<HttpClient> _waiting;
};

} // namespace buttondriver
