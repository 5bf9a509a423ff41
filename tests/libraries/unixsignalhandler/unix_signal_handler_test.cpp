// SPDX-License-Identifier: Apache-2.0
#include "unixsignalhandler/unix_signal_handler.h"

#include "logging/message_handler.h"
#include "support/captured_log.h"
#include "support/event_loop.h"

#include <QMetaMethod>

#include <gmock/gmock.h>

#include <cerrno>
#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

bool refuse_sigaction = false;
bool refuse_socketpair = false;

int refusal(int error) {
  errno = error;
  return -1;
}

} // namespace

// The linker sends each call of the two from this program, though not from its shared libraries, this way.
extern "C" {
int __real_sigaction(int sig, const struct sigaction *action, struct sigaction *old_action);
int __wrap_sigaction(int sig, const struct sigaction *action, struct sigaction *old_action);
int __real_socketpair(int domain, int type, int protocol, int *ends);
int __wrap_socketpair(int domain, int type, int protocol, int *ends);

int __wrap_sigaction(int sig, const struct sigaction *action, struct sigaction *old_action) {
  return refuse_sigaction ? refusal(EINVAL) : __real_sigaction(sig, action, old_action);
}

int __wrap_socketpair(int domain, int type, int protocol, int *ends) {
  return refuse_socketpair ? refusal(EMFILE) : __real_socketpair(domain, type, protocol, ends);
}
}

namespace unixsignalhandler {
namespace {

using buttondriver::test::CapturedLog;
using buttondriver::test::process_events_until;
using buttondriver::test::process_ready_events;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> calls;
int calls_under_way = 0;
std::unique_ptr<UnixSignalHandler> bridge;

void first() { calls.emplace_back("first"); }
void second() { calls.emplace_back("second"); }
void third() { calls.emplace_back("third"); }
void destroying_the_bridge() {
  calls.emplace_back("destroying");
  bridge.reset();
}
/// Gives a next call every chance to come too early.
void slow() {
  ++calls_under_way;
  calls.push_back("slow " + std::to_string(calls_under_way));
  process_ready_events();
  --calls_under_way;
}

std::set<int> open_descriptors() {
  std::set<int> descriptors;
  DIR *directory = ::opendir("/proc/self/fd");
  while (const dirent *entry = ::readdir(directory))
    if (entry->d_name[0] != '.')
      descriptors.insert(std::stoi(entry->d_name));
  descriptors.erase(::dirfd(directory));
  ::closedir(directory);
  return descriptors;
}

struct sigaction action_of(int sig) {
  struct sigaction action = {};
  ::sigaction(sig, nullptr, &action);
  return action;
}

class UnixSignalHandlerTest : public testing::Test {
protected:
  void SetUp() override {
    calls.clear();
    bridge = std::make_unique<UnixSignalHandler>();
  }
  void TearDown() override {
    refuse_sigaction = false;
    bridge.reset();
    for (const int sig : {SIGUSR1, SIGUSR2, SIGWINCH, SIGHUP, SIGRTMIN})
      ::signal(sig, SIG_DFL);
  }

  /// Goes on until `count` callbacks have run and no signal is left.
  static testing::AssertionResult see_calls(std::size_t count) {
    if (!process_events_until([count] { return calls.size() >= count; }))
      return testing::AssertionFailure() << "only " << calls.size() << " calls";
    process_ready_events();
    return testing::AssertionSuccess();
  }

  CapturedLog _log;
};

struct NamedSignal {
  int number;
  const char *name;
};

constexpr NamedSignal named_signals[] = {
    {1, "SIGHUP"},   {2, "SIGINT"},     {3, "SIGQUIT"},  {4, "SIGILL"},     {5, "SIGTRAP"},  {6, "SIGABRT"},
    {7, "SIGBUS"},   {8, "SIGFPE"},     {9, "SIGKILL"},  {10, "SIGUSR1"},   {11, "SIGSEGV"}, {12, "SIGUSR2"},
    {13, "SIGPIPE"}, {14, "SIGALRM"},   {15, "SIGTERM"}, {16, "SIGSTKFLT"}, {17, "SIGCHLD"}, {18, "SIGCONT"},
    {19, "SIGSTOP"}, {20, "SIGTSTP"},   {21, "SIGTTIN"}, {22, "SIGTTOU"},   {23, "SIGURG"},  {24, "SIGXCPU"},
    {25, "SIGXFSZ"}, {26, "SIGVTALRM"}, {27, "SIGPROF"}, {28, "SIGWINCH"},  {29, "SIGIO"},   {30, "SIGPWR"},
    {31, "SIGSYS"},
};

TEST_F(UnixSignalHandlerTest, knows_the_names_of_signals_1_to_31) {
  for (const NamedSignal &row : named_signals)
    EXPECT_EQ(UnixSignalHandler::nameTable().at(row.number), row.name);
  EXPECT_EQ(UnixSignalHandler::nameTable().count(0), 0U);
  EXPECT_EQ(UnixSignalHandler::nameTable().count(32), 0U);
}

TEST_F(UnixSignalHandlerTest, has_one_slot_and_no_signals) {
  const QMetaObject &meta = UnixSignalHandler::staticMetaObject;
  EXPECT_STREQ(meta.className(), "unixsignalhandler::UnixSignalHandler");
  ASSERT_EQ(meta.methodCount() - meta.methodOffset(), 1);
  const QMetaMethod slot = meta.method(meta.methodOffset());
  EXPECT_EQ(slot.methodSignature(), "callSignalHandlers()");
  EXPECT_EQ(slot.methodType(), QMetaMethod::Slot);
}

TEST_F(UnixSignalHandlerTest, calls_the_callback_of_a_raised_signal_in_the_event_loop_only) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  ::raise(SIGUSR1);
  EXPECT_THAT(calls, IsEmpty());
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("first"));
}

TEST_F(UnixSignalHandlerTest, logs_an_installation_and_a_removal) {
  EXPECT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  EXPECT_THAT(_log.take(), ElementsAre("debug: Installing handler for  SIGUSR1 ",
                                       "debug: Installation of  SIGUSR1  handler was successful "));
  EXPECT_TRUE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  EXPECT_THAT(_log.take(),
              ElementsAre("debug: Removing  SIGUSR1  handler ", "debug: Removal of  SIGUSR1  handler was successful "));
}

TEST_F(UnixSignalHandlerTest, asks_for_restarted_system_calls_and_an_empty_mask) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  const struct sigaction action = action_of(SIGUSR1);
  EXPECT_EQ(action.sa_handler, &UnixSignalHandler::writeSignalToSocket);
  EXPECT_TRUE(action.sa_flags & SA_RESTART);
  EXPECT_FALSE(action.sa_flags & (SA_SIGINFO | SA_NODEFER | static_cast<int>(SA_RESETHAND) | SA_ONSTACK));
  for (const NamedSignal &row : named_signals)
    EXPECT_EQ(sigismember(&action.sa_mask, row.number), 0) << row.name;
}

TEST_F(UnixSignalHandlerTest, a_removal_restores_the_default_action) {
  ::signal(SIGUSR1, SIG_IGN);
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  ASSERT_TRUE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  EXPECT_EQ(action_of(SIGUSR1).sa_handler, SIG_DFL);
}

TEST_F(UnixSignalHandlerTest, refuses_signals_that_cannot_be_caught) {
  EXPECT_FALSE(UnixSignalHandler::installSignalHandler(9, first));
  EXPECT_FALSE(UnixSignalHandler::installSignalHandler(19, first));
  EXPECT_THAT(_log.take(), ElementsAre("debug: ERROR:  SIGKILL  cannot be caught.  Not adding handler. ",
                                       "debug: ERROR:  SIGSTOP  cannot be caught.  Not adding handler. "));
}

TEST_F(UnixSignalHandlerTest, keeps_the_first_callback_when_installed_twice) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  _log.take();
  EXPECT_FALSE(UnixSignalHandler::installSignalHandler(SIGUSR1, second));
  EXPECT_THAT(_log.take(), IsEmpty());
  ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("first"));
}

TEST_F(UnixSignalHandlerTest, removing_what_was_never_installed_fails_silently) {
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(9));
  EXPECT_THAT(_log.take(), IsEmpty());
}

TEST_F(UnixSignalHandlerTest, can_be_installed_again_after_a_removal) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  ASSERT_TRUE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, second));
  ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("second"));
}

TEST_F(UnixSignalHandlerTest, a_number_that_the_system_refuses_gets_an_empty_name) {
  EXPECT_FALSE(UnixSignalHandler::installSignalHandler(-5, first));
  EXPECT_THAT(_log.take(), ElementsAre("debug: Installing handler for   ", "debug: Failed to install handler for   "));
  EXPECT_EQ(UnixSignalHandler::nameTable().at(-5), "");
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(-5));
}

TEST_F(UnixSignalHandlerTest, a_real_time_signal_works_with_an_empty_name) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGRTMIN, first));
  EXPECT_THAT(_log.take(),
              ElementsAre("debug: Installing handler for   ", "debug: Installation of    handler was successful "));
  EXPECT_EQ(UnixSignalHandler::nameTable().at(SIGRTMIN), "");
  ::raise(SIGRTMIN);
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("first"));
}

TEST_F(UnixSignalHandlerTest, keeps_the_callback_when_the_system_refuses_its_removal) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  _log.take();
  refuse_sigaction = true;
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  EXPECT_THAT(_log.take(),
              ElementsAre("debug: Removing  SIGUSR1  handler ", "debug: Failed to remove handler for  SIGUSR1 "));
  refuse_sigaction = false;
  ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(1));
  EXPECT_TRUE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
}

TEST_F(UnixSignalHandlerTest, three_signals_call_back_in_their_order) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR2, second));
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGWINCH, third));
  ::raise(SIGWINCH);
  ::raise(SIGUSR1);
  ::raise(SIGUSR2);
  ASSERT_TRUE(see_calls(3));
  EXPECT_THAT(calls, ElementsAre("third", "first", "second"));
}

TEST_F(UnixSignalHandlerTest, the_next_callback_waits_until_the_last_one_has_returned) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, slow));
  for (int i = 0; i < 3; ++i)
    ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(3));
  EXPECT_THAT(calls, ElementsAre("slow 1", "slow 1", "slow 1"));
}

TEST_F(UnixSignalHandlerTest, ignores_a_signal_whose_callback_was_removed_meanwhile) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR2, second));
  ::raise(SIGUSR1);
  ::raise(SIGUSR2);
  ASSERT_TRUE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("second"));
}

TEST_F(UnixSignalHandlerTest, returns_at_once_when_no_signal_waits) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  bridge->callSignalHandlers();
  EXPECT_THAT(calls, IsEmpty());
  ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(1));
}

TEST_F(UnixSignalHandlerTest, drops_signals_when_too_many_wait_and_leaves_errno_alone) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  constexpr std::size_t raised = 20000;
  for (std::size_t i = 0; i < raised; ++i) {
    errno = ENOTTY;
    ::raise(SIGUSR1);
    ASSERT_EQ(errno, ENOTTY);
  }
  ASSERT_TRUE(see_calls(100));
  // There is room again; this one comes after all that were kept.
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR2, second));
  ::raise(SIGUSR2);
  ASSERT_TRUE(process_events_until([] { return calls.back() == "second"; }));
  EXPECT_LT(calls.size(), raised);
}

TEST_F(UnixSignalHandlerTest, a_new_bridge_starts_without_callbacks_while_signals_still_arrive) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  const UnixSignalHandler newer;
  EXPECT_EQ(action_of(SIGUSR1).sa_handler, &UnixSignalHandler::writeSignalToSocket);
  ::raise(SIGUSR1);
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR2, second));
  ::raise(SIGUSR2);
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("second"));
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
}

TEST_F(UnixSignalHandlerTest, a_replaced_bridge_reads_what_was_left_for_it) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  ::raise(SIGUSR1);
  const UnixSignalHandler newer;
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, second));
  ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(2));
  EXPECT_THAT(calls, ElementsAre("second", "second"));
}

TEST_F(UnixSignalHandlerTest, callbacks_of_before_the_first_bridge_are_discarded_by_it) {
  bridge.reset();
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  bridge = std::make_unique<UnixSignalHandler>();
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
}

TEST_F(UnixSignalHandlerTest, a_signal_after_the_destruction_is_harmless) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, first));
  bridge.reset();
  ::raise(SIGUSR1);
  process_ready_events();
  EXPECT_THAT(calls, IsEmpty());
  EXPECT_FALSE(UnixSignalHandler::removeSignalHandler(SIGUSR1));
}

TEST_F(UnixSignalHandlerTest, a_callback_may_destroy_the_bridge) {
  ASSERT_TRUE(UnixSignalHandler::installSignalHandler(SIGUSR1, destroying_the_bridge));
  ::raise(SIGUSR1);
  ASSERT_TRUE(see_calls(1));
  EXPECT_THAT(calls, ElementsAre("destroying"));
}

TEST_F(UnixSignalHandlerTest, its_descriptors_never_block_and_close_on_exec) {
  const std::set<int> before = open_descriptors();
  const UnixSignalHandler newer;
  int opened = 0;
  for (const int descriptor : open_descriptors()) {
    if (before.count(descriptor) > 0)
      continue;
    ++opened;
    EXPECT_TRUE(::fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
    EXPECT_TRUE(::fcntl(descriptor, F_GETFL) & O_NONBLOCK);
  }
  EXPECT_EQ(opened, 2);
}

/// Neither comes back.
void make_a_bridge_without_descriptors() {
  buttondriver::install_message_handler();
  refuse_socketpair = true;
  const UnixSignalHandler no_bridge;
  ::_exit(0);
}

void take_a_signal_without_a_bridge() {
  errno = 0;
  UnixSignalHandler::writeSignalToSocket(SIGUSR1);
  ::_exit(errno);
}

TEST(UnixSignalHandlerDeathTest, ends_the_process_when_no_descriptor_is_left) {
  EXPECT_EXIT(make_a_bridge_without_descriptors(), testing::KilledBySignal(SIGABRT),
              "^Couldn't create signalsFd socketpair\n");
}

TEST(UnixSignalHandlerDeathTest, a_signal_before_the_first_bridge_is_harmless) {
  // Starts the program again for this test alone, so that no bridge has ever been made.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(take_a_signal_without_a_bridge(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace unixsignalhandler
