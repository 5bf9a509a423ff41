// SPDX-License-Identifier: Apache-2.0
#include "event_loop/epoll_dispatcher.h"

#include "files/owned_descriptor.h"
#include "threads/post.h"
#include "threads/task_semaphore.h"

#include <QEvent>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <gmock/gmock.h>

#include <atomic>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace buttondriver {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A thread whose event loop is the one under test.
class Thread : public QThread {
public:
  explicit Thread(std::function<void()> body) : _body(std::move(body)) {
    setEventDispatcher(new EpollDispatcher); // the thread's
    start();
  }
  ~Thread() override { wait(); }

private:
  void run() override { _body(); }

  std::function<void()> _body;
};

void process_events() { QThread::currentThread()->eventDispatcher()->processEvents(QEventLoop::AllEvents); }
void wait_for_events() { QThread::currentThread()->eventDispatcher()->processEvents(QEventLoop::WaitForMoreEvents); }

struct SocketPair {
  SocketPair() {
    int ends[2] = {-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends), 0);
    near_end.reset(ends[0]);
    far_end.reset(ends[1]);
  }
  void sendFromFar() const { EXPECT_EQ(::write(far_end.get(), "x", 1), 1); }
  void receive() const {
    char byte = 0;
    EXPECT_EQ(::read(near_end.get(), &byte, 1), 1);
  }

  OwnedDescriptor near_end;
  OwnedDescriptor far_end;
};

/// Writes the letter to the list whenever it fires.
class Notifier : public QSocketNotifier {
public:
  Notifier(int descriptor, Type type, std::string &fired, char letter) : QSocketNotifier(descriptor, type) {
    _fired = &fired;
    _letter = letter;
  }
  std::function<void()> when_fired;

protected:
  bool event(QEvent *event) override {
    if (event->type() == QEvent::SockAct) {
      *_fired += _letter;
      if (when_fired)
        when_fired();
    }
    return QSocketNotifier::event(event);
  }

private:
  std::string *_fired;
  char _letter;
};

TEST(EpollDispatcherTest, notifies_as_long_as_something_is_there_and_somebody_wants_to_know) {
  Thread thread([] {
    const SocketPair sockets;
    std::string fired;
    Notifier reader(sockets.near_end.get(), QSocketNotifier::Read, fired, 'r');
    process_events();
    EXPECT_EQ(std::exchange(fired, {}), "");
    sockets.sendFromFar();
    process_events();
    process_events();
    EXPECT_EQ(std::exchange(fired, {}), "rr");
    reader.setEnabled(false);
    process_events();
    EXPECT_EQ(std::exchange(fired, {}), "");
    reader.setEnabled(true);
    wait_for_events();
    EXPECT_EQ(std::exchange(fired, {}), "r");
    sockets.receive();
    process_events();
    EXPECT_EQ(fired, "");
  });
}

TEST(EpollDispatcherTest, tells_kinds_of_readiness_apart) {
  Thread thread([] {
    SocketPair sockets;
    std::string fired;
    const Notifier reader(sockets.near_end.get(), QSocketNotifier::Read, fired, 'r');
    Notifier writer(sockets.near_end.get(), QSocketNotifier::Write, fired, 'w');
    process_events();
    EXPECT_EQ(std::exchange(fired, {}), "w");
    sockets.sendFromFar();
    process_events();
    EXPECT_EQ(std::exchange(fired, {}), "rw");
    writer.setEnabled(false);
    process_events();
    EXPECT_EQ(std::exchange(fired, {}), "r");
    sockets.receive();
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(1);
    wait_for_events();
    EXPECT_FALSE(timer.isActive()) << "nobody waits for room any more";
    sockets.far_end.reset();
    process_events();
    EXPECT_EQ(fired, "r") << "the end is there to be read";
  });
}

TEST(EpollDispatcherTest, forgets_what_became_ready_before_a_descriptor_was_closed) {
  Thread thread([] {
    SocketPair pairs[2];
    std::string fired;
    std::unique_ptr<Notifier> readers[2];
    std::unique_ptr<Notifier> successor;
    const auto replace = [&](int other) {
      const int number = pairs[other].near_end.get();
      readers[other].reset();
      SocketPair next;
      EXPECT_EQ(::dup3(next.near_end.get(), number, O_CLOEXEC), number);
      successor = std::make_unique<Notifier>(number, QSocketNotifier::Read, fired, 's');
      pairs[other].far_end = std::move(next.far_end);
    };
    for (int i = 0; i < 2; ++i) {
      readers[i] = std::make_unique<Notifier>(pairs[i].near_end.get(), QSocketNotifier::Read, fired, 'r');
      readers[i]->when_fired = [&replace, i] { replace(1 - i); };
      pairs[i].sendFromFar();
    }
    process_events();
    EXPECT_EQ(fired, "r");
    for (const auto &reader : readers)
      if (reader)
        reader->setEnabled(false);
    for (const SocketPair &pair : pairs)
      pair.sendFromFar();
    process_events();
    EXPECT_EQ(fired, "rs");
  });
}

TEST(EpollDispatcherTest, ends_waiting_for_what_another_thread_posts) {
  QObject *receiver = nullptr;
  TaskSemaphore is_there;
  std::atomic<int> calls{0};
  Thread thread([&] {
    QObject object;
    QEventLoop loop;
    receiver = &object;
    QObject::connect(QThread::currentThread()->eventDispatcher(), &QAbstractEventDispatcher::aboutToBlock, &object,
                     [&] { is_there.release(); });
    QObject::connect(&object, &QObject::objectNameChanged, &loop, [&] {
      if (++calls == 100)
        loop.quit();
    });
    loop.exec();
  });
  for (int i = 1; i <= 100; ++i) {
    is_there.acquire();
    post(receiver, [receiver, i] { receiver->setObjectName(QString::number(i)); });
  }
  EXPECT_TRUE(thread.wait());
  EXPECT_EQ(calls, 100);
}

TEST(EpollDispatcherTest, ends_waiting_when_it_is_interrupted) {
  TaskSemaphore waits;
  Thread thread([&] {
    QObject context;
    QObject::connect(QThread::currentThread()->eventDispatcher(), &QAbstractEventDispatcher::aboutToBlock, &context,
                     [&] { waits.release(); });
    wait_for_events();
  });
  waits.acquire();
  // In a test that fails it waits for ever.
  thread.eventDispatcher()->interrupt();
  EXPECT_TRUE(thread.wait());
}

/// A call that ends one wait must not take the next one's end with it.
TEST(EpollDispatcherTest, an_interruption_after_a_call_that_has_ended_a_wait_ends_the_next_one) {
  Thread thread([] {
    auto *const dispatcher = QThread::currentThread()->eventDispatcher();
    QObject context;
    QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &context, [&] { dispatcher->wakeUp(); });
    wait_for_events();
    QObject::disconnect(dispatcher, nullptr, &context, nullptr);
    dispatcher->interrupt();
    bool has_waited = false;
    QTimer end;
    end.setSingleShot(true);
    QObject::connect(&end, &QTimer::timeout, &context, [&] { has_waited = true; });
    end.start(2000);
    wait_for_events();
    EXPECT_FALSE(has_waited);
  });
}

TEST(EpollDispatcherTest, watches_a_descriptor_that_has_the_number_of_one_that_was_closed_too_early) {
  Thread thread([] {
    std::string fired;
    SocketPair before;
    const int number = before.near_end.get();
    const Notifier forgotten(number, QSocketNotifier::Write, fired, 'w');
    SocketPair sockets;
    ASSERT_EQ(::dup3(sockets.near_end.get(), number, O_CLOEXEC), number);
    const Notifier reader(number, QSocketNotifier::Read, fired, 'r');
    sockets.sendFromFar();
    process_events();
    EXPECT_THAT(fired, testing::HasSubstr("r"));
  });
}

TEST(EpollDispatcherTest, ends_waiting_when_a_timer_is_due) {
  Thread thread([] {
    std::vector<int> fired;
    QTimer slow, quick, at_once;
    QEventLoop loop;
    QObject::connect(&slow, &QTimer::timeout, &loop, [&] {
      fired.push_back(20);
      loop.quit();
    });
    QObject::connect(&quick, &QTimer::timeout, &loop, [&] { fired.push_back(5); });
    QObject::connect(&at_once, &QTimer::timeout, &loop, [&] { fired.push_back(0); });
    for (QTimer *timer : {&slow, &quick, &at_once})
      timer->setSingleShot(true);
    slow.start(20);
    quick.start(5);
    at_once.start(0);
    loop.exec();
    EXPECT_THAT(fired, ElementsAre(0, 5, 20));
  });
}

TEST(EpollDispatcherTest, leaves_sockets_alone_when_told_so) {
  Thread thread([] {
    const SocketPair sockets;
    std::string fired;
    const Notifier reader(sockets.near_end.get(), QSocketNotifier::Read, fired, 'r');
    sockets.sendFromFar();
    QThread::currentThread()->eventDispatcher()->processEvents(QEventLoop::ExcludeSocketNotifiers);
    EXPECT_THAT(fired, IsEmpty());
  });
}

} // namespace
} // namespace buttondriver
