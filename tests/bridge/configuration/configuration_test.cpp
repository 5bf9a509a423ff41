// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/configuration_file.h"

#include "support/temporary_folder.h"

#include <QFile>

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace buttondriver::bridge {
namespace {

/// A folder with files that a configuration may name.
class ConfigurationTest : public testing::Test {
protected:
  ConfigurationTest() {
    for (const char *name : {"ca.pem", "bridge.crt"})
      folder.write(name, "anything");
    write_secret("bridge.key", "anything");
    write_secret("password", " Secret; with = signs \r\nsecond line\n");
  }

  void write_secret(const std::string &name, const std::string &content) const {
    namespace fs = std::filesystem;
    fs::permissions(folder.write(name, content), fs::perms::owner_read | fs::perms::owner_write);
  }
  Outcome<Configuration> read(const QByteArray &text) const {
    return read_configuration(text, QString::fromStdString(folder.path("mqtt.ini")));
  }
  QString path(const char *name) const { return QString::fromStdString(folder.path(name)); }

  test::TemporaryFolder folder;
};

void expect_value(const Outcome<Configuration> &read) { ASSERT_TRUE(read) << read.failure().text.toStdString(); }

TEST_F(ConfigurationTest, a_file_with_a_panel_only_means_the_defaults) {
  const auto read = this->read("[panels]\nhall = 192.0.2.7\n");
  expect_value(read);
  EXPECT_EQ(read->broker, BrokerSettings());
  EXPECT_EQ(read->name, "1");
  EXPECT_EQ(read->prefix, "buttondriver");
  EXPECT_EQ(read->share, 1);
  EXPECT_EQ(read->shares, 1);
  EXPECT_EQ(read->statistics_seconds, 10);
  EXPECT_EQ(read->metrics_port, 0);
  EXPECT_EQ(read->discovery_prefix, "");
  EXPECT_EQ(read->panels.keys(), QList<QByteArray>{"hall"});
  EXPECT_TRUE(read->groups.isEmpty());
}

TEST_F(ConfigurationTest, takes_every_key) {
  const auto read = this->read("\xEF\xBB\xBF# a comment\n"
                               "; another one\r\n"
                               "\n"
                               "[bridge]\n"
                               "name = north\r\n"
                               "prefix=plant/panels\n"
                               "  share = 2/3  \n"
                               "statistics = 0\n"
                               "metrics_port = 9100\n"
                               "discovery = on\n"
                               "discovery_prefix = home\n"
                               "[groups]\n"
                               "doors = hall , kitchen.2\n"
                               "[ broker ]\n"
                               "host\t=\tbroker.example.org\n"
                               "port = 8884\n"
                               "protocol = 3.1.1\n"
                               "user = j\xC3\xBCrgen\n"
                               "password_file = password\n"
                               "tls = on\n"
                               "ca_file = ca.pem\n"
                               "cert_file = bridge.crt\n"
                               "key_file = bridge.key\n"
                               "keep_alive = 5\n"
                               "[panels]\n"
                               "hall = 192.0.2.7\n"
                               "kitchen.2 = kitchen.example.org:4000\n"
                               "lab = [2001:db8::7]:65535\n"
                               "attic-1 = [::1]");
  expect_value(read);
  EXPECT_EQ(read->name, "north");
  EXPECT_EQ(read->prefix, "plant/panels");
  EXPECT_EQ(read->share, 2);
  EXPECT_EQ(read->shares, 3);
  EXPECT_EQ(read->statistics_seconds, 0);
  EXPECT_EQ(read->metrics_port, 9100);
  EXPECT_EQ(read->discovery_prefix, "home");
  const QMap<QByteArray, QVector<QByteArray>> groups = {{"doors", {"hall", "kitchen.2"}}};
  EXPECT_EQ(read->groups, groups);
  const QMap<QByteArray, PanelAddress> panels = {{"hall", {"192.0.2.7", 3003}},
                                                 {"kitchen.2", {"kitchen.example.org", 4000}},
                                                 {"lab", {"2001:db8::7", 65535}},
                                                 {"attic-1", {"::1", 3003}}};
  EXPECT_EQ(read->panels, panels);
  BrokerSettings broker;
  broker.host = QStringLiteral("broker.example.org");
  broker.port = 8884;
  broker.is_mqtt_5 = false;
  broker.user = QStringLiteral("j\u00FCrgen");
  broker.password = " Secret; with = signs ";
  broker.has_tls = true;
  broker.ca_file = path("ca.pem");
  broker.cert_file = path("bridge.crt");
  broker.key_file = path("bridge.key");
  broker.keep_alive_seconds = 5;
  EXPECT_EQ(read->broker, broker);
}

TEST_F(ConfigurationTest, the_same_key_may_stand_in_two_sections) {
  const auto read = this->read("[panels]\nhall = ::7\n[groups]\nhall = hall\n[broker]\nhost = ::1\n");
  EXPECT_FALSE(read) << "an address of a panel stands in brackets, for its port";
  const auto right = this->read("[panels]\nhall = [::7]\n[groups]\nhall = hall\n[broker]\nhost = ::1\n");
  expect_value(right);
  EXPECT_EQ(right->groups.value("hall"), QVector<QByteArray>{"hall"});
  EXPECT_EQ(right->broker.host, QStringLiteral("::1"));
}

TEST_F(ConfigurationTest, tls_has_a_port_of_its_own) {
  const auto read = this->read("[broker]\ntls = on\n[panels]\nhall = 192.0.2.7\n");
  expect_value(read);
  EXPECT_EQ(read->broker.port, 8883);
}

TEST_F(ConfigurationTest, discovery_has_a_prefix_of_its_own) {
  const auto read = this->read("[bridge]\ndiscovery = on\n[panels]\nhall = 192.0.2.7\n");
  expect_value(read);
  EXPECT_EQ(read->discovery_prefix, "homeassistant");
}

TEST_F(ConfigurationTest, reads_the_file_as_it_lies_on_the_disk) {
  folder.write("mqtt.ini", "[broker]\nca_file = ca.pem\ntls = on\n[panels]\nhall = 192.0.2.7\n");
  const auto read = read_configuration_file(path("mqtt.ini"));
  expect_value(read);
  EXPECT_EQ(read->broker.ca_file, path("ca.pem"));
}

TEST_F(ConfigurationTest, the_example_says_what_it_shows) {
  const auto read = read_configuration_file(QStringLiteral(BUTTONDRIVER_EXAMPLES "/buttondriver-mqtt.ini"));
  expect_value(read);
  EXPECT_EQ(read->broker, BrokerSettings());
  EXPECT_EQ(read->panels.keys(), (QList<QByteArray>{"hall", "lab"}));
  EXPECT_EQ(read->groups.keys(), QList<QByteArray>{"ground-floor"});
}

TEST_F(ConfigurationTest, the_example_shows_every_key_with_its_default) {
  // Without the marks of comment in front of keys, all that is not a file nor a user is as it is without the file.
  QFile file(QStringLiteral(BUTTONDRIVER_EXAMPLES "/buttondriver-mqtt.ini"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QByteArray text = file.readAll();
  text.replace("\n;", "\n");
  write_secret("broker-password", "secret");
  write_secret("bridge.key", "anything");
  const auto read = this->read(text);
  expect_value(read);
  BrokerSettings broker;
  broker.user = QStringLiteral("bridge");
  broker.password = "secret";
  broker.has_tls = true;
  broker.port = 8883;
  broker.ca_file = path("ca.pem");
  broker.cert_file = path("bridge.crt");
  broker.key_file = path("bridge.key");
  EXPECT_EQ(read->broker, broker);
  EXPECT_EQ(read->name, "1");
  EXPECT_EQ(read->prefix, "buttondriver");
  EXPECT_EQ(read->shares, 1);
  EXPECT_EQ(read->statistics_seconds, 10);
  EXPECT_EQ(read->metrics_port, 0);
  EXPECT_EQ(read->discovery_prefix, "homeassistant");
}

} // namespace
} // namespace buttondriver::bridge
