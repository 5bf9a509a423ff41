// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "c_client/client.h"
#include "support/scripted_peer.h"

#include <gtest/gtest.h>

namespace buttondriver::test {

/// Long enough for anything that comes at all.
inline constexpr int long_ms = 20000;

/// A client that is connected to a peer, and closed when it goes.
class OpenClient {
public:
  explicit OpenClient(ScriptedPeer &peer, int timeout_ms = long_ms) {
    EXPECT_EQ(buttondriver_open(&_client, "127.0.0.1", peer.port(), timeout_ms), BUTTONDRIVER_OK);
    peer.accept();
  }
  ~OpenClient() { buttondriver_close(&_client); }
  OpenClient(const OpenClient &) = delete;
  OpenClient &operator=(const OpenClient &) = delete;

  buttondriver_client *get() { return &_client; }
  bool isOpen() const { return buttondriver_is_open(&_client) == 1; }

private:
  buttondriver_client _client{};
};

} // namespace buttondriver::test
