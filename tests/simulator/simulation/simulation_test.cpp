// SPDX-License-Identifier: Apache-2.0
#include "simulator/simulation/simulation.h"

#include "panel/panel_lib.h"
#include "support/captured_log.h"
#include "support/event_loop.h"
#include "support/test_root.h"

#include <QHostAddress>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace buttondriver::simulator {
namespace {

class SimulationTest : public testing::Test {
protected:
  SimulationTest() {
    root.writeFontSize(8, 16);
    settings.root = root.path();
    settings.daemon_arguments = QStringList{"buttondriver-sim", "map", QString(), "0"};
  }
  ~SimulationTest() override {
    simulation.reset();
    panel::panel_lib_done();
  }

  Outcome<Done> start() {
    simulation.emplace(settings);
    return simulation->start();
  }

  struct Shown {
    int intensity;
    int font_height;
    std::string font_fault;
  };
  Shown shown() {
    std::optional<Shown> result;
    simulation->whenTextsCanBeRead([&](const PanelState &state, const ScreenFont &font) {
      result = Shown{state.intensity, font.cellHeight(), font.fault()};
    });
    EXPECT_TRUE(test::process_events_until([&] { return result.has_value(); }));
    return result.value_or(Shown{});
  }

  const test::TestRoot root;
  test::CapturedLog log;
  test::CapturedOutput output;
  SimulationSettings settings;
  std::optional<Simulation> simulation;
};

TEST_F(SimulationTest, has_the_configured_font_and_the_highest_intensity) {
  ASSERT_TRUE(start());
  EXPECT_EQ(shown().font_height, 16);
  EXPECT_EQ(shown().intensity, 63);
}

TEST_F(SimulationTest, a_chosen_font_takes_the_place_of_the_configured_one) {
  settings.font = QStringLiteral("6x13");
  ASSERT_TRUE(start());
  EXPECT_EQ(shown().font_height, 13);
  EXPECT_EQ(test::read_file(root.launcherConfiguration()), "[font]\nwidth=8\nheight=16\n");
}

TEST_F(SimulationTest, a_font_that_is_not_there_is_a_failure) {
  settings.font = QStringLiteral("99x98");
  const auto started = start();
  ASSERT_FALSE(started);
  EXPECT_TRUE(started.failure().text.startsWith(QStringLiteral("there is no font 99x98 in ")));
}

TEST_F(SimulationTest, a_chosen_intensity_is_there_at_the_start_and_after_a_reset) {
  settings.intensity_percent = 0;
  ASSERT_TRUE(start());
  EXPECT_EQ(shown().intensity, 0);
  simulation->daemon()->fpga().setTFTIntensity(100);
  EXPECT_EQ(shown().intensity, 63);
  bool is_reset = false;
  simulation->reset([&] { is_reset = true; });
  EXPECT_TRUE(test::process_events_until([&] { return is_reset; }));
  EXPECT_EQ(shown().intensity, 0);
}

TEST_F(SimulationTest, what_a_closed_connection_has_sent_comes_before_a_reset) {
  ASSERT_TRUE(start());
  Connector &server = simulation->daemon()->server();
  QTcpSocket staying, leaving;
  for (QTcpSocket *client : {&staying, &leaving})
    client->connectToHost(QHostAddress(QHostAddress::LocalHost), server.port());
  ASSERT_TRUE(test::process_events_until([&] { return server.clients().size() == 2; }));

  // The daemon sees nothing of it before it is asked to reset.
  const int more_than_a_turn_has = 1'000;
  for (int count = 0; count < more_than_a_turn_has; ++count)
    leaving.write(QByteArray::fromHex("0000000c000000150000000300000001"));
  leaving.disconnectFromHost();
  ASSERT_TRUE(leaving.state() == QAbstractSocket::UnconnectedState || leaving.waitForDisconnected());
  bool is_reset = false;
  simulation->reset([&] { is_reset = true; });
  EXPECT_EQ(simulation->messages()->count(), 0U);
  EXPECT_TRUE(test::process_events_until([&] { return is_reset; }));
  EXPECT_EQ(server.clients().size(), 1U);
  EXPECT_EQ(simulation->messages()->count(), 0U);
}

TEST_F(SimulationTest, may_end_while_it_waits_for_a_closed_connection) {
  ASSERT_TRUE(start());
  Connector &server = simulation->daemon()->server();
  QTcpSocket leaving;
  leaving.connectToHost(QHostAddress(QHostAddress::LocalHost), server.port());
  ASSERT_TRUE(test::process_events_until([&] { return server.clients().size() == 1; }));
  leaving.disconnectFromHost();
  ASSERT_TRUE(leaving.state() == QAbstractSocket::UnconnectedState || leaving.waitForDisconnected());
  bool is_reset = false;
  simulation->reset([&] { is_reset = true; });
  simulation.reset();
  EXPECT_FALSE(is_reset);
}

class OutsideSimulationTest : public SimulationTest {
protected:
  OutsideSimulationTest() { settings.device_socket = folder.filePath(QStringLiteral("device")); }

  const QTemporaryDir folder;
};

TEST_F(OutsideSimulationTest, reads_texts_with_the_font_in_a_file) {
  const QString fonts = QString::fromStdString(root.paths().font_directory);
  for (const auto &[name, height] : {std::pair("6x13", 13), std::pair("10x20", 20)}) {
    settings.font = fonts + QStringLiteral("/%1.pcf.gz").arg(QLatin1String(name));
    ASSERT_TRUE(start());
    EXPECT_EQ(shown().font_height, height);
    simulation.reset();
  }
}

TEST_F(OutsideSimulationTest, a_font_that_cannot_be_read_with_is_a_failure) {
  settings.font = QStringLiteral("/nowhere/at.all");
  const auto started = start();
  ASSERT_FALSE(started);
  EXPECT_EQ(started.failure().text, QStringLiteral("texts cannot be read with /nowhere/at.all: no font is loaded"));
}

TEST_F(OutsideSimulationTest, without_a_font_says_why_texts_cannot_be_read) {
  ASSERT_TRUE(start());
  EXPECT_EQ(shown().font_fault, "which font the panel's driver uses is not known; --font tells");
}

} // namespace
} // namespace buttondriver::simulator
