// SPDX-License-Identifier: Apache-2.0
// buttondriver-mqtt as a program, between a real broker and virtual panels: what is published can be seen on them.

#include "bridge_scene.h"
#include "virtual_panel.h"

#include "support/event_loop.h"

#include <QBuffer>
#include <QImage>

#include <csignal>

namespace buttondriver::bridge {
namespace {

QByteArray png(int side, QRgb colour) {
  QImage image(side, side, QImage::Format_RGB32);
  image.fill(colour);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "PNG");
  return bytes;
}

QByteArray address_of(const VirtualPanel &panel) { return "127.0.0.1:" + QByteArray::number(panel.port()); }

class BridgeTest : public BridgeScene {
protected:
  explicit BridgeTest(test::MosquittoBroker::Options options = {}) : BridgeScene(std::move(options)) {
    both = configure("both.ini", panelLines());
  }

  QByteArray panelLines() const {
    return "[panels]\nhall = " + address_of(hall) + "\nyard = " + address_of(yard) + "\n[groups]\ndoors = hall, yard\n";
  }

  /// A picture, a line over it, and a second picture over a part of the line: the order is seen.
  void drawInOrder() {
    keep("hall/screen/0/image", png(128, qRgb(0, 0, 255)));
    keep("hall/screen/0/line/1", "under and over");
    keep("hall/screen/0/image/40/10", png(20, qRgb(255, 0, 0)));
    keep("hall/led/7", "on");
    hall.expect("expect-pixel 0 45 15 FF0000");
    hall.expect("expect-led 7 on");
  }

  VirtualPanel hall;
  VirtualPanel yard;
  std::string both;
};

TEST_F(BridgeTest, panels_show_what_is_published_for_them_and_for_their_group) {
  const auto bridge = startBridge(both);
  expectLast("hall/availability", "online");
  expectLast("bridge/1/availability", "online");
  keep("hall/screen/0/line/1", "Hello, hall");
  keep("yard/screen/2/line/0", "Gr\xc3\xbc\xc3\x9f"
                               "e");
  keep("group/doors/led/5", "blink 500");
  keep("yard/toggle/1", "on");
  hall.expect("wait-until expect-text 0 1 'Hello, hall' and expect-led 5 blinking 500");
  yard.expect("wait-until expect-text 2 0 'Gr\xc3\xbc\xc3\x9f"
              "e' and expect-led 5 blinking 500 and expect-toggle 1 on");
}

TEST_F(BridgeTest, nothing_is_left_of_the_former_payloads_of_a_part) {
  const auto bridge = startBridge(both);
  const char *const payloads[] = {
      R"({"line":7,"offset":3,"text":"88888888","colour":"#ff0000","background":"#00ff00"})",
      R"({"line":7,"offset":3,"text":"g","chars":8,"colour":"#ffff00"})",
      R"({"line":7,"offset":2,"text":"l","chars":14,"background":"#0000ff"})",
      R"({"line":7,"offset":15,"text":"i","background":"#ff00ff"})",
  };
  int led = 0;
  for (const char *payload : payloads) {
    keep("hall/screen/0/part/clock", payload);
    keep("yard/screen/0/part/clock", ""); // there the next one is the first
    keep("yard/screen/0/part/clock", payload);
    const QByteArray number = QByteArray::number(led++);
    keep("group/doors/led/" + number, "on");
    hall.expect("expect-led " + number + " on");
    yard.expect("expect-led " + number + " on");
    EXPECT_EQ(hall.picture(), yard.picture()) << payload;
  }
}

TEST_F(BridgeTest, a_panel_that_lost_its_power_shows_the_same_picture_again) {
  const auto bridge = startBridge(both);
  drawInOrder();
  const QByteArray before = hall.picture();
  hall.cutPower();
  expectLast("hall/availability", "offline");
  // What comes meanwhile is shown too.
  keep("hall/status/3", "on");
  keep("hall/led/8", "on");
  keep("hall/led/8", "");
  hall.startAgain();
  hall.expect("expect-status 3 on");
  keep("hall/status/3", "off");
  hall.expect("expect-status 3 off");
  EXPECT_EQ(before, hall.picture());
}

TEST_F(BridgeTest, after_a_crash_of_the_bridge_the_order_of_drawing_is_known) {
  auto bridge = startBridge(both);
  drawInOrder();
  const QByteArray before = hall.picture();
  expectAny("hall/order");
  bridge->sendSignal(SIGKILL);
  expectLast("bridge/1/availability", "offline"); // the last will
  hall.cutPower();
  hall.startAgain();
  bridge = startBridge(both);
  hall.expect("expect-led 7 on");
  hall.expect("expect-pixel 0 45 15 FF0000");
  EXPECT_EQ(before, hall.picture());
}

TEST_F(BridgeTest, a_broker_that_lost_its_memory_gets_it_back) {
  const auto bridge = startBridge(both);
  drawInOrder();
  keep("group/doors/led/5", "on");
  yard.expect("expect-led 5 on");
  expectAny("hall/order");
  const QByteArray before = hall.picture();
  broker.end(SIGKILL);
  forget();
  ASSERT_TRUE(broker.start());
  waitForClient();
  expectLast("hall/screen/0/line/1", "under and over");
  expectLast("group/doors/led/5", "on");
  expectAny("hall/order");
  EXPECT_EQ("under and over", retained("hall/screen/0/line/1"));
  EXPECT_EQ(1, count("group/doors/led/5"));
  EXPECT_EQ(before, hall.picture());
}

TEST_F(BridgeTest, what_is_wrong_is_answered_and_reaches_no_panel) {
  const auto bridge = startBridge(both);
  expectLast("hall/availability", "online");
  const QByteArray before = hall.picture();
  keep("hall/led/24", "on");
  expectAny("hall/error");
  EXPECT_TRUE(last("hall/error").startsWith("{\"error\":\"")) << last("hall/error").toStdString();
  EXPECT_TRUE(last("hall/error").endsWith("\",\"topic\":\"buttondriver/hall/led/24\"}"))
      << last("hall/error").toStdString();
  publish("group/doors/screen/0/part", "{", false);
  expectAny("group/doors/error");
  EXPECT_EQ(before, hall.picture());
}

TEST_F(BridgeTest, what_is_done_once_does_not_come_back) {
  const auto bridge = startBridge(both);
  expectLast("hall/availability", "online");
  expectLast("bridge/1/availability", "online");
  keep("hall/led/5", "on");
  publish("hall/do/led/6", "on", false);
  hall.expect("wait-until expect-led 5 on and expect-led 6 on");
  hall.cutPower();
  expectLast("hall/availability", "offline");
  publish("hall/do/led/6", "on", false);
  expectAny("hall/error");
  hall.startAgain();
  hall.expect("expect-led 5 on");
  hall.expect("expect-led 6 off");
  // What is kept can be said again.
  publish("hall/do/led/5", "off", false);
  hall.expect("expect-led 5 off");
  keep("hall/led/5", "on");
  hall.expect("expect-led 5 on");
}

TEST_F(BridgeTest, what_is_taken_back_is_not_shown_any_more) {
  const auto bridge = startBridge(both);
  const QByteArray nothing = hall.picture();
  drawInOrder();
  keep("hall/led/7", "");
  keep("hall/screen/0/image/40/10", "");
  hall.expect("wait-until expect-led 7 off and expect-text 0 1 'under and over'");
  keep("hall/screen/0/line/1", "");
  keep("hall/screen/0/image", "");
  hall.expect("expect-pixel 0 45 15 000000");
  hall.expect("expect-pixel 0 0 0 000000");
  EXPECT_EQ(nothing, hall.picture());
}

TEST_F(BridgeTest, ends_with_a_word) {
  const auto bridge = startBridge(both);
  expectLast("hall/availability", "online");
  expectLast("bridge/1/availability", "online");
  bridge->sendSignal(SIGTERM);
  expectLast("hall/availability", "offline");
  expectLast("yard/availability", "offline");
  expectLast("bridge/1/availability", "offline");
  EXPECT_EQ(0, bridge->waitForEnd());
}

TEST_F(BridgeTest, takes_over_another_configuration_and_leaves_other_connections_alone) {
  const std::string file = configure("bridge.ini", "[panels]\nhall = " + address_of(hall) + "\n");
  const auto bridge = startBridge(file);
  keep("hall/led/5", "on");
  keep("yard/led/6", "on");
  keep("group/doors/led/4", "on");
  hall.expect("expect-led 5 on");
  configure("bridge.ini", "");
  ASSERT_TRUE(bridge->waitForError("bridge.ini: no panel stands in [panels]"));
  configure("bridge.ini", "[nonsense]\n");
  ASSERT_TRUE(bridge->waitForError("bridge.ini:3: "));
  configure("bridge.ini", panelLines());
  yard.expect("wait-until expect-led 6 on and expect-led 4 on");
  hall.expect("expect-led 4 on");
  hall.expect("expect-led 5 on");
  EXPECT_EQ(1, bridge->standardError().count("panel hall is there"));
  EXPECT_EQ(0, bridge->standardError().count("panel hall is not there"));
  // Out of the group, and out of the configuration.
  configure("bridge.ini", "[panels]\nhall = " + address_of(hall) + "\n");
  expectLast("yard/availability", "offline");
  hall.expect("expect-led 4 off");
  hall.expect("expect-led 5 on");
}

TEST_F(BridgeTest, shares_panels_with_another_bridge) {
  // By the hash of their names, these fall to different shares of two.
  const QByteArray panels =
      "[panels]\nhall = " + address_of(hall) + "\nyard = " + address_of(yard) + "\n[groups]\ndoors = hall, yard\n";
  const auto one = startBridge(configure("one.ini", "[bridge]\nname = one\nshare = 1/2\n" + panels));
  auto two = startBridge(configure("two.ini", "[bridge]\nname = two\nshare = 2/2\n" + panels));
  keep("hall/led/5", "on");
  keep("yard/led/5", "on");
  keep("group/doors/led/6", "on");
  hall.expect("wait-until expect-led 5 on and expect-led 6 on");
  yard.expect("wait-until expect-led 5 on and expect-led 6 on");
  EXPECT_TRUE(one->standardError().contains("panel hall is there"));
  EXPECT_FALSE(one->standardError().contains("panel yard"));
  EXPECT_TRUE(two->standardError().contains("panel yard is there"));
  EXPECT_FALSE(two->standardError().contains("panel hall"));
  // Another one takes a share over, with nothing but the broker's memory.
  two->sendSignal(SIGKILL);
  expectLast("bridge/two/availability", "offline");
  EXPECT_EQ("online", retained("bridge/one/availability"));
  hall.cutPower();
  yard.cutPower();
  two = startBridge(configure("three.ini", "[bridge]\nname = three\nshare = 2/2\n" + panels));
  hall.startAgain();
  yard.startAgain();
  hall.expect("wait-until expect-led 5 on and expect-led 6 on");
  yard.expect("wait-until expect-led 5 on and expect-led 6 on");
}

} // namespace
} // namespace buttondriver::bridge
