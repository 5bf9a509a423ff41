// SPDX-License-Identifier: Apache-2.0
// A scene over TCP: what the daemon says, every register transfer, and the picture, against those kept in scene/.

#include "support/program.h"
#include "support/test_root.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace buttondriver {
namespace {

const QString scene = QStringLiteral(BUTTONDRIVER_SCENE);

/// What one run of the scene left behind, with the names of this machine and this run replaced.
struct Traces {
  QByteArray output;
  QByteArray log;
  QByteArray transfers;
  QImage picture;
};

/// Pairs of a transfer's words and how often each follows itself: "w 0a0f 16384 0000*16384".
QByteArray compressed(const QByteArray &recording) {
  QByteArray text;
  const QList<QByteArray> lines = recording.split('\n');
  for (const QByteArray &line : lines) {
    const QList<QByteArray> items = line.split(' ');
    if (items.size() < 4)
      continue;
    text += items[1] + ' ' + items[2] + ' ' + items[3];
    for (int i = 4; i < items.size();) {
      int end = i;
      while (end < items.size() && items[end] == items[i])
        ++end;
      text += ' ' + items[i];
      if (end - i > 1)
        text += '*' + QByteArray::number(end - i);
      i = end;
    }
    text += '\n';
  }
  return text;
}

QByteArray without_names(QByteArray text, const QString &root, const QString &folder) {
  text.replace(root.toUtf8(), "ROOT").replace(folder.toUtf8(), "FOLDER");
  QString unnumbered = QString::fromUtf8(text);
  unnumbered.replace(QRegularExpression(QStringLiteral("listening on port \\d+")),
                     QStringLiteral("listening on port N"));
  unnumbered.replace(QRegularExpression(QStringLiteral("client disconnected \\d+")),
                     QStringLiteral("client disconnected N"));
  return unnumbered.toUtf8();
}

Traces play() {
  const test::TestRoot root;
  root.writeFontSize(8, 16);
  root.writeLevels("lcd 40\nscr 80\n");
  const QTemporaryDir folder;
  const QString picture = folder.filePath(QStringLiteral("panel.png"));
  const QString recording = folder.filePath(QStringLiteral("recording"));
  test::Program simulator(QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
                          {QStringLiteral("--http=off"), QStringLiteral("--root"), root.path(),
                           QStringLiteral("--snapshot"), picture, QStringLiteral("--record"), recording,
                           QStringLiteral("map"), QString(), QStringLiteral("0")});
  // The signal that "wait" uses would end a program that is not ready for it.
  EXPECT_TRUE(simulator.waitForOutput("listening on port"));
  auto client = simulator.connectTo();
  int pictures = 0;
  const QList<QByteArray> lines = test::read_file(scene + QStringLiteral("/messages.txt")).split('\n');
  for (const QByteArray &line : lines) {
    if (line == "wait") {
      EXPECT_TRUE(test::answered_ping(*client));
      simulator.sendSignal(SIGUSR1);
      EXPECT_TRUE(simulator.waitForOutput("buttondriver-sim: wrote", ++pictures));
    } else if (!line.isEmpty() && !line.startsWith('#')) {
      const QByteArray message = QByteArray::fromHex(line);
      const QByteArray length = QByteArray::number(static_cast<int>(message.size()), 16).rightJustified(8, '0');
      test::send_frames(*client, length + line);
      if (message == QByteArray::fromHex("0000000c")) {
        EXPECT_TRUE(client->waitForReadyRead(20'000));
        EXPECT_EQ(client->readAll().toHex().toStdString(), "0000000400000001");
      }
    }
  }
  client->disconnectFromHost();
  EXPECT_TRUE(simulator.waitForError("client disconnected"));
  simulator.sendSignal(SIGTERM);
  EXPECT_EQ(simulator.waitForEnd(), 0);
  return {without_names(simulator.standardOutput(), root.path(), folder.path()),
          without_names(simulator.standardError(), root.path(), folder.path()), compressed(test::read_file(recording)),
          QImage(picture)};
}

class SceneTest : public testing::Test {
protected:
  static void SetUpTestSuite() { traces = play(); }
  static Traces traces;
};

Traces SceneTest::traces;

QByteArray expected(const char *name) { return test::read_file(scene + QLatin1Char('/') + QLatin1String(name)); }

TEST_F(SceneTest, prints_the_expected_texts) {
  EXPECT_EQ(traces.output.toStdString(), expected("output.txt").toStdString());
}

TEST_F(SceneTest, logs_the_expected_lines) { EXPECT_EQ(traces.log.toStdString(), expected("log.txt").toStdString()); }

TEST_F(SceneTest, makes_the_expected_transfers) {
  const QList<QByteArray> actual = traces.transfers.split('\n');
  const QList<QByteArray> wanted = expected("transfers.txt").split('\n');
  for (int i = 0; i < wanted.size() && i < actual.size(); ++i)
    EXPECT_EQ(actual[i].toStdString(), wanted[i].toStdString()) << "line " << i + 1;
  EXPECT_EQ(actual.size(), wanted.size());
}

TEST_F(SceneTest, shows_the_expected_picture) {
  const QImage wanted(scene + QStringLiteral("/panel.png"));
  ASSERT_FALSE(wanted.isNull()) << "the expected picture is missing";
  ASSERT_EQ(traces.picture.size(), wanted.size());
  // Shapes are drawn by the Qt in use, and the versions differ by a step here and there at a rounded edge.
  constexpr int tolerated_step = 2;
  int different = 0;
  for (int y = 0; y < wanted.height(); ++y) {
    for (int x = 0; x < wanted.width(); ++x) {
      const QRgb is = traces.picture.pixel(x, y);
      const QRgb should = wanted.pixel(x, y);
      if (std::abs(qRed(is) - qRed(should)) > tolerated_step ||
          std::abs(qGreen(is) - qGreen(should)) > tolerated_step ||
          std::abs(qBlue(is) - qBlue(should)) > tolerated_step)
        ++different;
    }
  }
  EXPECT_EQ(different, 0) << "pixels differ";
}

} // namespace
} // namespace buttondriver
