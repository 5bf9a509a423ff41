// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/panels/panel_link.h"
#include "bridge/panels/panel_stand_in.h"
#include "support/event_loop.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace buttondriver::bridge::test {

using buttondriver::test::process_events_until;
using buttondriver::test::process_ready_events;

inline Target button_target(int place) {
  Target target;
  target.kind = Target::Kind::button;
  target.place = static_cast<std::int16_t>(place);
  return target;
}

inline Target screen_target(int screen, Target::Kind kind = Target::Kind::screen, int place = Target::everything) {
  Target target;
  target.kind = kind;
  target.screen = static_cast<std::int16_t>(screen);
  target.place = static_cast<std::int16_t>(place);
  return target;
}

inline Command lamp(const QByteArray &message, int place = 0) { return {framed(message), button_target(place), true}; }
inline Command line(const QByteArray &message, int place = 0) {
  return {framed(message), screen_target(0, Target::Kind::line, place), true};
}
inline Command picture(const QByteArray &message) { return {framed(message), screen_target(0), false}; }

/// A link to a stand-in, and what it has told.
class LinkFixture : public testing::Test {
protected:
  using Taken = PanelLink::Taken;

  /// Short pauses, and patience that no test comes to the end of.
  static PanelLink::Times shortPauses() { return {600000, 600000, 1, 20}; }

  void start(PanelLink::Times times = shortPauses(), const QString &host = QStringLiteral("127.0.0.1")) {
    link = std::make_unique<PanelLink>(
        host, panel.port(),
        [this] {
          ++restores;
          return wanted;
        },
        times);
    QObject::connect(link.get(), &PanelLink::availabilityChanged, link.get(), [this](bool is_up) {
      EXPECT_EQ(is_up, link->numbers().is_up);
      availability += is_up ? '+' : '-';
    });
    QObject::connect(link.get(), &PanelLink::restored, link.get(), [this] { ++restored; });
    QObject::connect(link.get(), &PanelLink::lost, link.get(),
                     [this](const QByteArray &topic) { lost.push_back(topic); });
    QObject::connect(link.get(), &PanelLink::brokeOff, link.get(),
                     [this](const QString &reason) { reasons += reason; });
    link->start();
  }
  /// Until the panel is up and shows what is wanted.
  void startReleased(PanelLink::Times times = shortPauses()) {
    start(times);
    link->release();
    ASSERT_TRUE(process_events_until([this] { return restored == 1; }));
  }
  /// Sends pictures until some wait, while the panel does not read. How many were sent.
  int jam(const QByteArray &message) {
    panel.reads = false;
    int count = 0;
    while (link->numbers().waiting_commands < 3) {
      EXPECT_EQ(link->send("picture", picture(message), true), Taken::yes);
      ++count;
      process_ready_events();
    }
    return count;
  }

  PanelStandIn panel;
  QVector<TopicCommand> wanted;
  std::unique_ptr<PanelLink> link;
  int restores = 0;
  int restored = 0;
  std::string availability;
  std::vector<QByteArray> lost;
  QStringList reasons;
};

} // namespace buttondriver::bridge::test
