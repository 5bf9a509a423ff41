// SPDX-License-Identifier: Apache-2.0
#include "server/answers.h"

#include "files/owned_descriptor.h"
#include "server/limits.h"
#include "support/captured_log.h"
#include "support/event_loop.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>

namespace buttondriver {
namespace {

using testing::Contains;
using testing::HasSubstr;

class AnswersTest : public testing::Test {
protected:
  AnswersTest() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
    near_end.reset(ends[0]);
    far_end.reset(ends[1]);
    answers.emplace(near_end.get());
    QObject::connect(&*answers, &Answers::settled, [this] { ++times_settled; });
  }

  void answer(int count, const QByteArray &text = "answer!\n") {
    for (int i = 0; i < count; ++i)
      EXPECT_EQ(answers->write(text), text.size());
  }

  /// What the client can read now.
  std::string read() {
    std::string text;
    std::array<char, 65536> piece{};
    for (;;) {
      const ssize_t size = ::recv(far_end.get(), piece.data(), piece.size(), MSG_DONTWAIT);
      if (size <= 0)
        return text;
      text.append(piece.data(), static_cast<std::size_t>(size));
    }
  }

  /// All that comes until nothing is owed any more.
  std::string readAll() {
    std::string text;
    EXPECT_TRUE(test::process_events_until([&] {
      text += read();
      return !answers->isOwing();
    }));
    return text + read();
  }

  static std::string repeated(const std::string &text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
      all += text;
    return all;
  }

  OwnedDescriptor near_end;
  OwnedDescriptor far_end;
  std::optional<Answers> answers;
  int times_settled = 0;
};

TEST_F(AnswersTest, are_sent_when_told_and_not_before) {
  answer(3);
  EXPECT_EQ(read(), "");
  EXPECT_TRUE(answers->isOwing());
  answers->send();
  EXPECT_EQ(read(), repeated("answer!\n", 3));
  EXPECT_FALSE(answers->isOwing());
  EXPECT_EQ(times_settled, 0) << "nothing had to wait";
}

TEST_F(AnswersTest, that_the_system_does_not_take_are_sent_when_it_does) {
  answer(200'000); // 1.6 MB, more than a socket holds
  answers->send();
  EXPECT_TRUE(answers->isOwing());
  EXPECT_EQ(readAll().size(), 8U * 200'000);
  EXPECT_EQ(times_settled, 1);
}

TEST_F(AnswersTest, go_on_when_the_callers_descriptor_is_closed) {
  answer(200'000);
  answers->send();
  answers->socketIsGone();
  near_end.reset();
  answer(10); // from what was read before
  EXPECT_EQ(readAll(), repeated("answer!\n", 200'010));
  EXPECT_EQ(times_settled, 1);
  answer(10);
  EXPECT_FALSE(answers->isOwing()) << "nobody hears these";
  EXPECT_EQ(::recv(far_end.get(), nullptr, 0, MSG_DONTWAIT), 0) << "the connection has ended";
}

TEST_F(AnswersTest, of_which_none_is_owed_end_with_the_socket) {
  answer(5);
  answers->socketIsGone();
  EXPECT_FALSE(answers->isOwing());
  answer(5);
  EXPECT_FALSE(answers->isOwing());
}

TEST_F(AnswersTest, end_when_the_client_has_gone) {
  answer(200'000);
  answers->send();
  far_end.reset();
  EXPECT_TRUE(test::process_events_until([&] { return !answers->isOwing(); }));
  EXPECT_EQ(times_settled, 1);
  answer(1);
  answers->send();
  EXPECT_FALSE(answers->isOwing()) << "no signal ends the process either";
}

TEST_F(AnswersTest, beyond_the_number_that_may_be_owed_are_dropped_and_that_is_logged_once) {
  test::CapturedLog log;
  answer(200'000);
  answers->send();
  answer(static_cast<int>(limits::owed_answers) + 1000);
  const std::vector<std::string> lines = log.take();
  EXPECT_EQ(lines.size(), 1U);
  EXPECT_THAT(lines, Contains(HasSubstr("client reads no answers, further ones are dropped, descriptor " +
                                        std::to_string(near_end.get()))));
  const std::size_t sent = readAll().size() / 8;
  EXPECT_GT(sent, static_cast<std::size_t>(limits::owed_answers));
  EXPECT_LE(sent, static_cast<std::size_t>(limits::owed_answers) + 200'000);
  // After it has read them all, it is told of again.
  answer(200'000);
  answers->send();
  answer(static_cast<int>(limits::owed_answers) + 1000);
  EXPECT_EQ(log.take().size(), 1U);
}

TEST_F(AnswersTest, of_another_kind_are_sent_after_those_before_and_dropped_while_those_are_owed) {
  answer(3);
  answer(2, "other");
  answers->send();
  EXPECT_EQ(read(), repeated("answer!\n", 3) + "otherother");
  answer(200'000);
  answers->send();
  answer(1, "lost");
  const std::string text = readAll();
  EXPECT_EQ(text.size(), 8U * 200'000);
  EXPECT_EQ(text.find("lost"), std::string::npos);
  answer(1, "");
  EXPECT_FALSE(answers->isOwing());
}

TEST_F(AnswersTest, that_are_larger_than_what_is_sent_at_once_arrive_whole) {
  const QByteArray large(100'000, 'x');
  answer(20, large);
  answers->send();
  EXPECT_TRUE(answers->isOwing());
  EXPECT_EQ(readAll(), std::string(2'000'000, 'x'));
}

TEST(AnswersOfNobodyTest, are_not_owed) {
  Answers answers(-1);
  EXPECT_EQ(answers.write("answer"), 6);
  answers.send();
  EXPECT_FALSE(answers.isOwing());
}

} // namespace
} // namespace buttondriver
