// SPDX-License-Identifier: Apache-2.0
#include "qt_client/q_button_driver_client.h"

#include "support/captured_log.h"
#include "support/event_loop.h"
#include "support/hex.h"

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QTcpServer>
#include <QThread>

#include <gmock/gmock.h>

#include <arpa/inet.h>
#include <dlfcn.h>
#include <functional>
#include <memory>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

/// Where a connection to the daemon's own port goes while the test runs; 0 lets it pass.
quint16 port_instead_of_3003 = 0;

/// Called for each socket that is opened, which is once for each attempt to connect; empty for none.
std::function<void()> before_attempt;

} // namespace

// Taken by Qt's network library too: the client that always calls port 3003 reaches the test's server.
extern "C" int connect(int descriptor, const sockaddr *address, socklen_t size) {
  using Connect = int (*)(int, const sockaddr *, socklen_t);
  static const auto real_connect = reinterpret_cast<Connect>(::dlsym(RTLD_NEXT, "connect"));
  const auto *internet = reinterpret_cast<const sockaddr_in *>(address);
  if (port_instead_of_3003 == 0 || address->sa_family != AF_INET || internet->sin_port != htons(3003) ||
      internet->sin_addr.s_addr != htonl(INADDR_LOOPBACK))
    return real_connect(descriptor, address, size);
  sockaddr_in instead = *internet;
  instead.sin_port = htons(port_instead_of_3003);
  return real_connect(descriptor, reinterpret_cast<const sockaddr *>(&instead), sizeof instead);
}

extern "C" int socket(int domain, int type, int protocol) {
  using Socket = int (*)(int, int, int);
  static const auto real_socket = reinterpret_cast<Socket>(::dlsym(RTLD_NEXT, "socket"));
  if (before_attempt)
    before_attempt();
  return real_socket(domain, type, protocol);
}

namespace buttondriver {
namespace {

using std::vector;
using test::from_hex;
using test::process_events_until;
using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Lt;

const QString local_host = QStringLiteral("127.0.0.1");

/// A port of this machine that nobody else gets; refuses connections until it listens.
class ReservedPort {
public:
  ReservedPort() : _descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (::bind(_descriptor, reinterpret_cast<const sockaddr *>(&address), size) == 0 &&
        ::getsockname(_descriptor, reinterpret_cast<sockaddr *>(&address), &size) == 0)
      _port = ntohs(address.sin_port);
  }
  ~ReservedPort() { ::close(_descriptor); }
  ReservedPort(const ReservedPort &) = delete;
  ReservedPort &operator=(const ReservedPort &) = delete;

  quint16 port() const { return _port; }
  void listen() const { ::listen(_descriptor, 5); }
  /// Takes a connection that is there already and reads it to its end.
  std::string read_one_connection() const {
    const int connection = ::accept(_descriptor, nullptr, nullptr);
    std::string all;
    char part[4096];
    for (ssize_t got = 0; (got = ::read(connection, part, sizeof part)) > 0;)
      all.append(part, static_cast<std::size_t>(got));
    ::close(connection);
    return all;
  }

private:
  int _descriptor;
  quint16 _port = 0;
};

class QButtonDriverClientTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(_server.listen(QHostAddress::LocalHost)); }
  void TearDown() override {
    port_instead_of_3003 = 0;
    before_attempt = nullptr;
  }

  QTcpSocket *next_connection() {
    process_events_until([this] { return _server.hasPendingConnections(); });
    return _server.nextPendingConnection();
  }

  /// What arrives at `peer` until there are `size` bytes.
  static std::string received(QTcpSocket *peer, qint64 size) {
    process_events_until([=] { return peer->bytesAvailable() >= size; });
    return peer->readAll().toStdString();
  }

  QTcpServer _server;
};

TEST_F(QButtonDriverClientTest, has_its_three_slots_and_three_signals) {
  const QMetaObject &meta = QButtonDriverClient::staticMetaObject;
  EXPECT_STREQ(meta.className(), "buttondriver::QButtonDriverClient");
  vector<std::string> slots_in_order;
  vector<std::string> all_signals;
  for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
    const bool is_slot = meta.method(index).methodType() == QMetaMethod::Slot;
    (is_slot ? slots_in_order : all_signals).push_back(meta.method(index).methodSignature().toStdString());
  }
  EXPECT_THAT(slots_in_order, testing::ElementsAre("msg(QByteArray)", "msg(vector<QByteArray>)", "connected()"));
  EXPECT_THAT(all_signals, testing::ElementsAre("refused(int)", "dropped(int)", "connectionChanged(bool)"));
}

TEST_F(QButtonDriverClientTest, a_message_of_132_bytes_leaves_as_136) {
  QButtonDriverClient client(local_host, _server.serverPort());
  const QByteArray message = QByteArray::fromHex("0000000600000001FFFFFFFF") + QByteArray(120, '\x5A');
  client.msg(message);
  EXPECT_TRUE(client.waitForBytesWritten(5000));
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  EXPECT_EQ(received(peer, 136), from_hex("00000084 00000006 00000001 FFFFFFFF") + std::string(120, '\x5A'));
}

TEST_F(QButtonDriverClientTest, without_arguments_calls_port_3003_of_this_machine) {
  port_instead_of_3003 = _server.serverPort();
  QButtonDriverClient client;
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  client.msg(QByteArray::fromHex("0000000C"));
  EXPECT_EQ(received(peer, 8), from_hex("00000004 0000000C"));
}

TEST_F(QButtonDriverClientTest, takes_a_host_name) {
  QButtonDriverClient client(QStringLiteral("localhost"), _server.serverPort());
  test::CapturedLog log;
  EXPECT_TRUE(client.waitForConnected(10000));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(QButtonDriverClientTest, a_list_leaves_in_its_order_and_an_empty_one_not_at_all) {
  QButtonDriverClient client(local_host, _server.serverPort());
  client.msg(vector<QByteArray>{});
  client.msg(vector<QByteArray>{QByteArray("ab"), QByteArray(), QByteArray("c\0d", 3)});
  client.msg(vector<QByteArray>{});
  client.msg(QByteArray("e"));
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  EXPECT_EQ(received(peer, 22), from_hex("00000002 6162 00000000 00000003 630064 00000001 65"));
}

class Sender : public QObject {
  Q_OBJECT
signals:
  void one(QByteArray message);
  void list(vector<QByteArray> messages);
};

TEST_F(QButtonDriverClientTest, is_reached_from_another_thread_by_the_names_of_its_slots) {
  QButtonDriverClient client(local_host, _server.serverPort());
  Sender sender;
  ASSERT_TRUE(QObject::connect(&sender, SIGNAL(list(vector<QByteArray>)), &client, SLOT(msg(vector<QByteArray>)),
                               Qt::QueuedConnection));
  ASSERT_TRUE(QObject::connect(&sender, SIGNAL(one(QByteArray)), &client, SLOT(msg(QByteArray)), Qt::QueuedConnection));
  test::CapturedLog log;
  std::thread other([&sender] {
    emit sender.list({QByteArray("ab"), QByteArray("cd")});
    emit sender.one(QByteArray("e"));
  });
  other.join();
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  EXPECT_EQ(received(peer, 17), from_hex("00000002 6162 00000002 6364 00000001 65"));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(QButtonDriverClientTest, drops_messages_after_a_second_without_a_server) {
  const ReservedPort nobody;
  test::CapturedLog log;
  auto client = std::make_unique<QButtonDriverClient>(local_host, nobody.port());
  EXPECT_EQ(client->connectWait(), 1000);
  vector<int> drops;
  QObject::connect(client.get(), &QButtonDriverClient::dropped, [&](int count) { drops.push_back(count); });
  QElapsedTimer timer;
  timer.start();
  client->msg(QByteArray("lost"));
  EXPECT_THAT(timer.elapsed(), AllOf(Ge(950), Lt(5000)));
  timer.start();
  client->msg(vector<QByteArray>{QByteArray("lost"), QByteArray("too")});
  EXPECT_THAT(timer.elapsed(), AllOf(Ge(950), Lt(5000)));
  EXPECT_THAT(log.take(), IsEmpty());
  EXPECT_THAT(drops, testing::ElementsAre(1, 2));
  // The server that comes now gets the next message and nothing of the others.
  nobody.listen();
  client->msg(QByteArray("kept"));
  EXPECT_TRUE(client->waitForBytesWritten(5000));
  client.reset();
  EXPECT_EQ(nobody.read_one_connection(), from_hex("00000004") + "kept");
}

TEST_F(QButtonDriverClientTest, tries_again_until_the_server_is_there) {
  const ReservedPort late;
  int attempts = 0;
  before_attempt = [&] {
    if (++attempts == 4)
      late.listen();
  };
  QButtonDriverClient client(local_host, late.port());
  EXPECT_TRUE(client.waitForConnected(30000));
  EXPECT_EQ(attempts, 4);
}

TEST_F(QButtonDriverClientTest, sends_to_a_server_that_accepts_late) {
  const ReservedPort late;
  late.listen();
  auto client = std::make_unique<QButtonDriverClient>(local_host, late.port());
  client->msg(QByteArray("early"));
  EXPECT_TRUE(client->waitForBytesWritten(5000));
  client.reset();
  EXPECT_EQ(late.read_one_connection(), from_hex("00000005") + "early");
}

TEST_F(QButtonDriverClientTest, waiting_for_no_time_fails_at_once) {
  const ReservedPort nobody;
  QButtonDriverClient client(local_host, nobody.port());
  QElapsedTimer timer;
  timer.start();
  for (const int msecs : {0, -1, -1000})
    EXPECT_FALSE(client.waitForConnected(msecs));
  EXPECT_LT(timer.elapsed(), 150);
}

/// A client that never waits, and what it has told.
class ImpatientClientTest : public QButtonDriverClientTest {
protected:
  /// Starts to connect to `port`.
  void make(quint16 port) {
    client = std::make_unique<QButtonDriverClient>(local_host, port);
    client->setConnectWait(0);
    QObject::connect(client.get(), &QButtonDriverClient::dropped, [this](int count) { drops.push_back(count); });
    QObject::connect(client.get(), &QButtonDriverClient::connectionChanged,
                     [this](bool is_connected) { changes.push_back(is_connected); });
  }

  /// Waits for that many changes of the connection.
  bool hasTold(std::size_t count) {
    return process_events_until([=] { return changes.size() >= count; });
  }

  std::unique_ptr<QButtonDriverClient> client;
  vector<int> drops;
  vector<bool> changes;
};

TEST_F(ImpatientClientTest, drops_messages_after_one_attempt_each_and_tells) {
  const ReservedPort nobody;
  int attempts = 0;
  before_attempt = [&] { ++attempts; };
  make(nobody.port());
  EXPECT_FALSE(client->isConnected());
  client->msg(QByteArray("lost"));
  client->msg(vector<QByteArray>{QByteArray("lost"), QByteArray("too")});
  client->msg(vector<QByteArray>{});
  EXPECT_THAT(drops, testing::ElementsAre(1, 2));
  // Who waits makes five in a second.
  EXPECT_LE(attempts, 4);
  // The server that comes now gets the next message and nothing of the others.
  nobody.listen();
  client->connectToServer();
  ASSERT_TRUE(hasTold(1));
  EXPECT_TRUE(client->isConnected());
  client->msg(QByteArray("kept"));
  EXPECT_TRUE(client->waitForBytesWritten(5000));
  client.reset();
  EXPECT_EQ(nobody.read_one_connection(), from_hex("00000004") + "kept");
  EXPECT_THAT(drops, testing::ElementsAre(1, 2));
  EXPECT_THAT(changes, testing::ElementsAre(true));
}

TEST_F(ImpatientClientTest, tells_that_the_connection_came_up_also_when_it_did_so_at_once) {
  make(_server.serverPort());
  EXPECT_THAT(changes, IsEmpty());
  ASSERT_TRUE(hasTold(1));
  EXPECT_THAT(changes, testing::ElementsAre(true));
  EXPECT_TRUE(client->isConnected());
  EXPECT_TRUE(client->waitForConnected(1));
}

TEST_F(ImpatientClientTest, tells_that_the_server_has_gone_and_that_it_is_there_again) {
  make(_server.serverPort());
  ASSERT_TRUE(hasTold(1));
  next_connection()->abort();
  ASSERT_TRUE(hasTold(2));
  EXPECT_FALSE(client->isConnected());
  client->msg(QByteArray("lost"));
  ASSERT_TRUE(hasTold(3));
  EXPECT_THAT(changes, testing::ElementsAre(true, false, true));
  client->msg(QByteArray("kept"));
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  EXPECT_EQ(received(peer, 8), from_hex("00000004") + "kept");
}

TEST_F(ImpatientClientTest, makes_no_second_connection_when_it_is_asked_for_one_again) {
  int attempts = 0;
  before_attempt = [&] { ++attempts; };
  test::CapturedLog log;
  make(_server.serverPort());
  client->connectToServer();
  ASSERT_TRUE(hasTold(1));
  client->connectToServer();
  client->msg(QByteArray("on"));
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  EXPECT_EQ(received(peer, 6), from_hex("00000002") + "on");
  EXPECT_EQ(attempts, 1);
  EXPECT_THAT(changes, testing::ElementsAre(true));
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(ImpatientClientTest, says_nothing_when_it_goes) {
  make(_server.serverPort());
  ASSERT_TRUE(hasTold(1));
  client.reset();
  EXPECT_THAT(changes, testing::ElementsAre(true));
}

/// Sends `message` until a new connection brings it, which must begin with its frame.
void expect_frame_on_a_new_connection(QTcpServer &server, QButtonDriverClient &client, const QByteArray &message,
                                      const std::string &frame) {
  ASSERT_TRUE(process_events_until([&] {
    client.msg(message);
    return server.hasPendingConnections();
  }));
  QTcpSocket *peer = server.nextPendingConnection();
  ASSERT_TRUE(process_events_until([&] { return peer->bytesAvailable() >= static_cast<qint64>(frame.size()); }));
  EXPECT_EQ(peer->read(static_cast<qint64>(frame.size())).toStdString(), frame);
}

TEST_F(QButtonDriverClientTest, connects_again_after_a_server_that_hung_up_within_a_frame) {
  QButtonDriverClient client(local_host, _server.serverPort());
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  peer->setReadBufferSize(6);
  client.msg(QByteArray(20000000, 'x'));
  ASSERT_EQ(received(peer, 6), from_hex("01312D00 7878"));
  peer->abort();
  expect_frame_on_a_new_connection(_server, client, QByteArray("whole"), from_hex("00000005") + "whole");
}

TEST_F(QButtonDriverClientTest, leaves_a_server_that_hung_up_but_does_not_read) {
  test::CapturedLog log;
  QButtonDriverClient client(local_host, _server.serverPort());
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  peer->setReadBufferSize(6);
  client.msg(QByteArray(20000000, 'x'));
  ASSERT_EQ(received(peer, 6), from_hex("01312D00 7878"));
  ASSERT_EQ(::shutdown(static_cast<int>(peer->socketDescriptor()), SHUT_WR), 0);
  expect_frame_on_a_new_connection(_server, client, QByteArray("whole"), from_hex("00000005") + "whole");
  EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(QButtonDriverClientTest, throws_the_answers_away) {
  QButtonDriverClient client(local_host, _server.serverPort());
  QTcpSocket *peer = next_connection();
  ASSERT_TRUE(peer);
  // More than the two ends of a connection hold when nobody reads.
  peer->write(QByteArray(20000000, 'a'));
  EXPECT_TRUE(process_events_until([peer] { return peer->bytesToWrite() == 0; }));
  client.msg(QByteArray("on"));
  EXPECT_EQ(received(peer, 6), from_hex("00000002") + "on");
}

/// A client whose server reads nothing until it is told to, and what the client has refused.
class FullClientTest : public QButtonDriverClientTest {
protected:
  void SetUp() override {
    QButtonDriverClientTest::SetUp();
    client = std::make_unique<QButtonDriverClient>(local_host, _server.serverPort());
    QObject::connect(client.get(), &QButtonDriverClient::refused, [this](int count) { refusals.push_back(count); });
    peer = next_connection();
    ASSERT_TRUE(peer);
    peer->setReadBufferSize(1);
  }

  /// Leaves a message waiting that is larger than all that the two ends of a connection hold, and the limit.
  void fill() {
    client->msg(QByteArray(large, 'x'));
    sent += large + 4;
  }

  /// Lets the server read on; true when all arrives that was accepted.
  bool allArrives() {
    peer->setReadBufferSize(0);
    return process_events_until([this] { return peer->bytesAvailable() >= sent; });
  }

  static constexpr int large = 20'000'000;
  std::unique_ptr<QButtonDriverClient> client;
  QTcpSocket *peer = nullptr;
  vector<int> refusals;
  qint64 sent = 0;
};

TEST_F(FullClientTest, refuses_what_comes_while_more_than_a_mebibyte_waits) {
  EXPECT_EQ(client->sendLimit(), 1024 * 1024);
  fill();
  EXPECT_THAT(refusals, IsEmpty());
  client->msg(QByteArray("one"));
  client->msg(vector<QByteArray>{QByteArray("two"), QByteArray("three")});
  client->msg(vector<QByteArray>{});
  EXPECT_THAT(refusals, testing::ElementsAre(1, 2));
  EXPECT_TRUE(allArrives());
  client->msg(QByteArray("again"));
  sent += 9;
  EXPECT_TRUE(allArrives());
  EXPECT_THAT(refusals, testing::ElementsAre(1, 2));
  EXPECT_TRUE(peer->readAll().endsWith(QByteArray("\0\0\0\5again", 9)));
}

TEST_F(FullClientTest, refuses_many_small_messages_as_well_and_loses_none_of_the_others) {
  const QByteArray picture(4854, 'p');
  while (refusals.empty() && sent < large) {
    client->msg(picture);
    if (refusals.empty())
      sent += picture.size() + 4;
  }
  EXPECT_LT(sent, large);
  EXPECT_GT(sent, client->sendLimit());
  EXPECT_TRUE(allArrives());
  EXPECT_EQ(peer->bytesAvailable(), sent);
}

TEST_F(FullClientTest, takes_another_limit) {
  client->setSendLimit(large);
  fill();
  fill();
  EXPECT_THAT(refusals, IsEmpty());
  fill();
  EXPECT_THAT(refusals, testing::ElementsAre(1));
}

} // namespace
} // namespace buttondriver

#include "q_button_driver_client_test.moc"
