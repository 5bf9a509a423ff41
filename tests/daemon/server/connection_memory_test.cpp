// SPDX-License-Identifier: Apache-2.0
// What a connection takes of the daemon's memory.

#include "daemon/server/server_fixture.h"
#include "files/owned_descriptor.h"

#include <arpa/inet.h>
#include <malloc.h>

#include <string>
#include <vector>

namespace buttondriver {
namespace {

/// A client that costs this process nothing but a descriptor.
OwnedDescriptor plain_client(quint16 port) {
  OwnedDescriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(::connect(client.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
  return client;
}

struct Row {
  const char *name;
  bool speaks;
  std::size_t most_bytes; // each
};

void PrintTo(const Row &row, std::ostream *out) { *out << row.name; }

class ConnectionMemoryTest : public test::ServerFixture, public testing::WithParamInterface<Row> {
protected:
  ConnectionMemoryTest() { setter.answer = test::frame(test::ping); }

  /// So many more; each has had an answer if they speak.
  void connectSome(std::size_t count) {
    for (const std::size_t all = _clients.size() + count; _clients.size() < all;) {
      _clients.push_back(plain_client(connector.port()));
      const QByteArray bytes = GetParam().speaks ? test::frame(test::ping) : QByteArray();
      ASSERT_EQ(::send(_clients.back().get(), bytes.constData(), static_cast<std::size_t>(bytes.size()), 0),
                bytes.size());
      ASSERT_TRUE(test::process_events_until([&] {
        return connector.clients().size() == _clients.size() && (bytes.isEmpty() || delivered() == _clients.size());
      }));
    }
    setter.calls = {};
  }

private:
  std::vector<OwnedDescriptor> _clients;
};

TEST_P(ConnectionMemoryTest, of_an_idle_connection_is_small) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer has its own allocator";
#else
  connectSome(10);
  const std::size_t before = ::mallinfo2().uordblks;
  constexpr std::size_t count = 200;
  connectSome(count);
  EXPECT_LE((::mallinfo2().uordblks - before) / count, GetParam().most_bytes);
#endif
}

INSTANTIATE_TEST_SUITE_P(Rows, ConnectionMemoryTest,
                         testing::Values(Row{"silent", false, 4096}, Row{"has_spoken", true, 4608}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
} // namespace buttondriver
