// SPDX-License-Identifier: Apache-2.0
#include "support/mosquitto/test_certificates.h"
#include "watched_connection.h"

#include <gmock/gmock.h>

#include <QScopeGuard>

#include <ostream>

using buttondriver::test::MosquittoBroker;
using buttondriver::test::process_events_until;
using buttondriver::test::TestCertificates;

namespace buttondriver::bridge {
namespace {

enum class Authority { right, wrong, of_the_system, known_to_the_system };

struct Row {
  const char *name;
  const char *certificate_is_for;
  Authority authority;
  bool has_client_certificate;
  const char *reason; ///< empty: it works
  const char *host = "127.0.0.1";
};

std::ostream &operator<<(std::ostream &stream, const Row &row) { return stream << row.name; }

class BrokerTlsTest : public testing::TestWithParam<Row> {};

const char *const any_reason = " "; // the broker may end the connection before it has said why
const char *const not_trusted = "certificate verify failed";

INSTANTIATE_TEST_SUITE_P(
    Each, BrokerTlsTest,
    testing::Values(Row{"good", "127.0.0.1", Authority::right, true, ""},
                    Row{"good_by_its_name", "localhost", Authority::right, true, "", "localhost"},
                    Row{"authority_that_the_system_knows", "127.0.0.1", Authority::known_to_the_system, true, ""},
                    Row{"wrong_authority", "127.0.0.1", Authority::wrong, true, not_trusted},
                    Row{"not_an_authority_of_the_system", "127.0.0.1", Authority::of_the_system, true, not_trusted},
                    Row{"wrong_host", "broker.example.org", Authority::right, true, "host name verification failed"},
                    Row{"no_client_certificate", "127.0.0.1", Authority::right, false, any_reason}),
    [](const auto &row) { return row.param.name; });

TEST_P(BrokerTlsTest, connects_only_to_who_it_should) {
  const Row &row = GetParam();
  const TestCertificates certificates;
  const TestCertificates others;
  const TestCertificates::Files of_broker = certificates.issue(QString::fromLatin1(row.certificate_is_for));
  const TestCertificates::Files of_client = certificates.issue(QStringLiteral("bridge"));
  MosquittoBroker::Options options;
  options.certificate = of_broker.certificate;
  options.key = of_broker.key;
  options.client_authority = certificates.authority();
  const MosquittoBroker broker(options);

  BrokerSettings settings = settings_for(broker, "one");
  settings.has_tls = true;
  settings.host = QString::fromLatin1(row.host);
  if (row.authority == Authority::right || row.authority == Authority::wrong)
    settings.ca_file = row.authority == Authority::right ? certificates.authority() : others.authority();
  if (row.authority == Authority::known_to_the_system)
    qputenv("SSL_CERT_FILE", certificates.authority().toLocal8Bit()); // OpenSSL's own name for where it looks
  const auto forget = qScopeGuard([] { qunsetenv("SSL_CERT_FILE"); });
  if (row.has_client_certificate) {
    settings.cert_file = of_client.certificate;
    settings.key_file = of_client.key;
  }
  WatchedConnection connection;
  if (*row.reason == '\0') {
    constexpr std::size_t count = 2000;
    WatchedConnection sender;
    settings.client_id = "sender";
    sender.start(settings);
    for (std::size_t i = 0; i < count; ++i)
      EXPECT_TRUE(sender.connection.publish("a/" + QByteArray::number(static_cast<int>(i)), "x", true, 1));
    ASSERT_TRUE(sender.waitUntilSent());
    settings.client_id = "one";
    connection.filters = {"a/#"};
    connection.marker_topic = "marker";
    connection.startAndCollect(settings);
    EXPECT_EQ(connection.messages.size(), count);
    return;
  }
  ASSERT_TRUE(connection.connection.start(settings));
  ASSERT_TRUE(process_events_until([&] { return connection.reasons.size() >= 2; }));
  EXPECT_THAT(connection.lastReason(), testing::HasSubstr(row.reason));
}

} // namespace
} // namespace buttondriver::bridge
