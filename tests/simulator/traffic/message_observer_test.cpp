// SPDX-License-Identifier: Apache-2.0
#include "simulator/traffic/message_observer.h"

#include <QBuffer>

#include <gmock/gmock.h>

namespace buttondriver::simulator {
namespace {

/// What was handed on, and with what.
class Receiver : public ButtonSetter {
public:
  void process_messages(const std::vector<QByteArray> &messages, QIODevice *reply, qint32 client_id) override {
    received.insert(received.end(), messages.begin(), messages.end());
    last_reply = reply;
    last_offset = client_id;
  }
  std::vector<QByteArray> received;
  QIODevice *last_reply = nullptr;
  qint32 last_offset = 0;
};

class MessageObserverTest : public testing::Test {
protected:
  MessageObserverTest() { observer.setNext(&receiver); }

  MessageObserver observer;
  Receiver receiver;
  QBuffer reply;
};

TEST_F(MessageObserverTest, hands_everything_on_as_it_came) {
  const std::vector<QByteArray> messages{QByteArray::fromHex("0000000c"), QByteArray(), QByteArray(70000, 'x')};
  observer.process_messages(messages, &reply, 2000);
  EXPECT_EQ(receiver.received, messages);
  EXPECT_EQ(receiver.last_reply, &reply);
  EXPECT_EQ(receiver.last_offset, 2000);
  observer.process_messages({}, &reply, 3000);
  EXPECT_EQ(receiver.last_offset, 3000);
  EXPECT_EQ(observer.count(), 3U);
}

TEST_F(MessageObserverTest, keeps_the_beginning_of_the_last_500) {
  for (int i = 0; i < 501; ++i)
    observer.process_messages({QByteArray(1000 + i, 'x')}, &reply, 1000);
  EXPECT_EQ(observer.count(), 501U);
  EXPECT_EQ(observer.messages().size(), 500U);
  EXPECT_EQ(observer.messages().at(2).size, 1001);
  EXPECT_EQ(observer.messages().at(2).bytes, QByteArray(512, 'x'));
  EXPECT_EQ(observer.messages().at(2).client, 1000);
}

TEST_F(MessageObserverTest, what_was_forgotten_counts_no_more) {
  observer.process_messages({QByteArray::fromHex("0000000f 00000000 00000000 00000001 00000003 486900")}, &reply, 1000);
  EXPECT_EQ(observer.texts().screens()[0].size(), 1U);
  observer.forget();
  EXPECT_EQ(observer.count(), 0U);
  EXPECT_EQ(observer.messages().size(), 0U);
  EXPECT_EQ(observer.texts().screens()[0].size(), 0U);
  observer.process_messages({QByteArray::fromHex("0000000c")}, &reply, 1000);
  EXPECT_EQ(observer.count(), 1U);
}

} // namespace
} // namespace buttondriver::simulator
