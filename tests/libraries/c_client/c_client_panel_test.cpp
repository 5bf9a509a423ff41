// SPDX-License-Identifier: Apache-2.0
// What a program in C does to a panel, as the panel's page tells it.

#include "simulator/http/web_page.h"
#include "support/event_loop.h"
#include "support/program.h"
#include "support/test_root.h"

#include <QHostAddress>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>

#include <gmock/gmock.h>

namespace buttondriver {
namespace {

using test::Program;

/// The body of the answer to a request for `path`.
QByteArray page(const QString &port, const QByteArray &path) {
  QTcpSocket socket;
  socket.connectToHost(QHostAddress(QHostAddress::LocalHost), port.toUShort());
  socket.write("GET " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n");
  QByteArray answer;
  const auto has_all = [&] {
    answer += socket.readAll();
    return socket.state() == QAbstractSocket::UnconnectedState;
  };
  EXPECT_TRUE(test::process_events_until(has_all, std::chrono::seconds(20)));
  const auto body = answer.indexOf("\r\n\r\n");
  EXPECT_GT(body, 0) << answer.toStdString();
  return answer.mid(body + 4);
}

/// "0 1 5" for lamps of which these are lit.
std::string lit(const QJsonArray &lamps) {
  std::string text;
  for (int i = 0; i < lamps.size(); ++i)
    if (lamps[i].toBool())
      text += (text.empty() ? "" : " ") + std::to_string(i);
  return text;
}

class CClientPanelTest : public testing::Test {
protected:
  void SetUp() override {
    if (!simulator::WebPage::isAvailable())
      GTEST_SKIP() << "this build has no page";
    root.writeFontSize(8, 16);
    simulated =
        std::make_unique<Program>(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
                                  QStringList{QStringLiteral("--http"), QStringLiteral("0"), QStringLiteral("--root"),
                                              root.path(), QStringLiteral("map"), QString(), QStringLiteral("0")});
    ASSERT_TRUE(simulated->waitForOutput("buttondriver-sim: listening on port "));
    ASSERT_TRUE(simulated->waitForOutput("/\n"));
    http = portAfter("page on http://127.0.0.1:");
    daemon = portAfter("listening on port ");
  }

  QString portAfter(const QByteArray &words) const {
    const QByteArray output = simulated->standardOutput();
    const QByteArray rest = output.mid(output.indexOf(words) + words.size());
    auto end = 0;
    while (end < rest.size() && rest[end] >= '0' && rest[end] <= '9')
      ++end;
    return QString::fromLatin1(rest.left(end));
  }

  QJsonObject state() const { return QJsonDocument::fromJson(page(http, "/state.json")).object(); }

  const test::TestRoot root;
  std::unique_ptr<Program> simulated;
  QString http;
  QString daemon;
};

TEST_F(CClientPanelTest, shows_what_a_program_in_c_has_asked_for) {
  EXPECT_EQ(state()[QStringLiteral("intensity")].toInt(), 63);
  root.writeLevels("scr 50\n"); // half of 63, rounded down
  Program program(QStringLiteral(C_PROGRAM), {QStringLiteral("127.0.0.1"), daemon});
  ASSERT_EQ(program.waitForEnd(), 0) << program.standardError().toStdString();

  const QJsonObject panel = state();
  const QJsonArray screens = panel[QStringLiteral("screens")].toArray();
  const auto text = [&](int screen) { return screens[screen].toObject()[QStringLiteral("text")].toArray(); };
  EXPECT_EQ(text(0), (QJsonArray{QStringLiteral("Hello, world")}));
  EXPECT_EQ(text(1), QJsonArray());
  EXPECT_EQ(text(2), (QJsonArray{QString(), QStringLiteral("Inverse")}));
  const QJsonArray blinking = panel[QStringLiteral("blinking")].toArray();
  ASSERT_EQ(blinking.size(), 1);
  EXPECT_EQ(blinking[0].toObject()[QStringLiteral("button")].toInt(), 7);
  EXPECT_EQ(blinking[0].toObject()[QStringLiteral("time")].toInt(), 250);
  QJsonArray buttons = panel[QStringLiteral("button_leds")].toArray();
  buttons[7] = true; // whatever it is at this moment
  EXPECT_EQ(lit(buttons), "0 1 2 3 4 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23");
  EXPECT_EQ(lit(panel[QStringLiteral("status_leds")].toArray()), "30 31");
  EXPECT_EQ(lit(panel[QStringLiteral("toggles")].toArray()), "1");
  EXPECT_EQ(panel[QStringLiteral("intensity")].toInt(), 31);
  EXPECT_TRUE(simulated->waitForOutput("buttondriver:image uploaded "));
  EXPECT_TRUE(simulated->waitForOutput("data[3] = 0x0\n"));
}

TEST_F(CClientPanelTest, shows_the_pixels_of_a_picture_and_of_texts) {
  Program program(QStringLiteral(C_PROGRAM), {QStringLiteral("127.0.0.1"), daemon});
  ASSERT_EQ(program.waitForEnd(), 0) << program.standardError().toStdString();
  QImage screens[3];
  for (int screen = 0; screen < 3; ++screen)
    ASSERT_TRUE(screens[screen].loadFromData(page(http, "/screen/" + QByteArray::number(screen) + ".png")));
  // The top row is the last one of the file.
  EXPECT_EQ(screens[1].pixel(10, 20), qRgb(255, 0, 0));
  EXPECT_EQ(screens[1].pixel(11, 20), qRgb(0, 255, 0));
  EXPECT_EQ(screens[1].pixel(10, 21), qRgb(0, 0, 255));
  EXPECT_EQ(screens[1].pixel(11, 21), qRgb(255, 255, 255));
  EXPECT_EQ(screens[1].pixel(9, 20), qRgb(0, 0, 0));
  EXPECT_EQ(screens[1].pixel(12, 21), qRgb(0, 0, 0));
  // Line 1 of screen 2, 16 rows high, is white up to its end, and so black on white.
  EXPECT_EQ(screens[2].pixel(127, 15), qRgb(0, 0, 0));
  EXPECT_EQ(screens[2].pixel(127, 16), qRgb(255, 255, 255));
  EXPECT_EQ(screens[2].pixel(127, 31), qRgb(255, 255, 255));
  EXPECT_EQ(screens[2].pixel(127, 32), qRgb(0, 0, 0));
  // Five of the cells, 8 columns wide, are red on black; those before them white on black.
  const auto colours = [&](int first_cell, int cells) {
    std::set<QRgb> found;
    for (int x = 8 * first_cell; x < 8 * (first_cell + cells); ++x)
      for (int y = 0; y < 16; ++y)
        found.insert(screens[0].pixel(x, y));
    return found;
  };
  EXPECT_THAT(colours(0, 7), testing::ElementsAre(qRgb(0, 0, 0), qRgb(255, 255, 255)));
  EXPECT_THAT(colours(7, 5), testing::ElementsAre(qRgb(0, 0, 0), qRgb(255, 0, 0)));
}

} // namespace
} // namespace buttondriver
