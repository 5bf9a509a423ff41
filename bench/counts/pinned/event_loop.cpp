// SPDX-License-Identifier: Apache-2.0
// The event loop of the daemon goes on only when the program says so: by then everything that belongs together has
// arrived, and the worker has nothing left to do. Otherwise it would be chance how much arrives in one round.

#include "counts/pinned/futex.h"
#include "counts/pinned/next_function.h"
#include "counts/pinned/state.h"

#include <poll.h>
#include <sys/epoll.h>
#include <valgrind/callgrind.h>

using namespace buttondriver::counts;

namespace {

/// What the program has asked for while the loop is parked.
void carry_out(std::uint32_t command) {
  if (command == gate::zero)
    CALLGRIND_ZERO_STATS;
  if (command == gate::dump)
    CALLGRIND_DUMP_STATS;
}

/// Until the program says `running` or `look`; returns which.
std::uint32_t park() {
  std::atomic<std::uint32_t> &gate_word = state().gate;
  std::uint32_t command = gate::parked;
  do {
    carry_out(command);
    gate_word = gate::parked;
    wake(gate_word);
    while ((command = gate_word) == gate::parked)
      wait_while(gate_word, gate::parked);
  } while (command != gate::running && command != gate::look);
  return command;
}

bool is_the_loop() { return ::gettid() == ::getpid(); }

/// `wait` waits for the time that it gets: none, or for ever, as no time passes while the daemon waits.
template <class Wait> int wait_parked(bool has_time, Wait wait) {
  count(Call::poll);
  int ready = wait(false);
  if (!has_time)
    return ready;
  while (ready == 0)
    ready = wait(park() == gate::running);
  state().gate = gate::running;
  return ready;
}

} // namespace

BUTTONDRIVER_IN_FRONT_OF(int, poll, pollfd *descriptors, nfds_t number, int limit_ms) {
  using Function = int(pollfd *, nfds_t, int);
  static Function *const next = next_function<Function>("poll");
  if (!state().is_armed || !is_the_loop())
    return next(descriptors, number, limit_ms);
  return wait_parked(limit_ms != 0, [&](bool for_ever) { return next(descriptors, number, for_ever ? -1 : 0); });
}

BUTTONDRIVER_IN_FRONT_OF(int, ppoll, pollfd *descriptors, nfds_t number, const timespec *limit, const void *signals) {
  using Function = int(pollfd *, nfds_t, const timespec *, const void *);
  static Function *const next = next_function<Function>("ppoll");
  if (!state().is_armed || !is_the_loop())
    return next(descriptors, number, limit, signals);
  const bool has_time = !limit || limit->tv_sec != 0 || limit->tv_nsec != 0;
  constexpr timespec none{0, 0};
  return wait_parked(has_time,
                     [&](bool for_ever) { return next(descriptors, number, for_ever ? nullptr : &none, signals); });
}

BUTTONDRIVER_IN_FRONT_OF(int, epoll_wait, int epoll, epoll_event *events, int room, int limit_ms) {
  using Function = int(int, epoll_event *, int, int);
  static Function *const next = next_function<Function>("epoll_wait");
  if (!state().is_armed || !is_the_loop())
    return next(epoll, events, room, limit_ms);
  return wait_parked(limit_ms != 0, [&](bool for_ever) { return next(epoll, events, room, for_ever ? -1 : 0); });
}
