// SPDX-License-Identifier: Apache-2.0
#include "counts/run/sleeping_process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace buttondriver::counts {
namespace {

/// A process of its own that does one thing until this object goes.
class Child {
public:
  explicit Child(void (*what)()) : pid(::fork()) {
    if (pid != 0)
      return;
    for (;;)
      what();
  }
  ~Child() {
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
  }
  Child(const Child &) = delete;
  Child &operator=(const Child &) = delete;

  const pid_t pid;
};

TEST(SleepingProcessTest, sleeps_soon_when_it_waits_in_the_kernel) {
  const Child child([] { ::pause(); });
  const SleepingProcess process(child.pid);
  while (!process.sleeps())
    ::usleep(100);
}

TEST(SleepingProcessTest, does_not_sleep_while_it_works) {
  const Child child([] {});
  const SleepingProcess process(child.pid);
  for (int i = 0; i < 1000; ++i)
    ASSERT_FALSE(process.sleeps());
}

TEST(SleepingProcessTest, that_is_not_there_does_not_sleep) { EXPECT_FALSE(SleepingProcess(0).sleeps()); }

} // namespace
} // namespace buttondriver::counts
