// SPDX-License-Identifier: Apache-2.0
#include "counts/run/counted_daemon.h"

#include "counts/pinned/futex.h"
#include "counts/run/sleeping_process.h"
#include "counts/table/callgrind_total.h"
#include "files/owned_descriptor.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>

namespace buttondriver::counts {

CountedDaemon::CountedDaemon(const std::string &program) {
  std::filesystem::copy(BUTTONDRIVER_COUNTS_ROOT, _root.path(""), std::filesystem::copy_options::recursive);
  std::filesystem::create_directory(_root.path("dev"));
  _root.write("dev/fpga-reg", "");
  mapState(_root.write("state", ""));
  const std::string root = _root.path("");
  const std::vector<std::string> variables = {
      bench::prepended("LD_PRELOAD", BUTTONDRIVER_TEST_PRELOAD ":" BUTTONDRIVER_COUNTS_PINNED),
      "BUTTONDRIVER_TEST_ROOT=" + root.substr(0, root.size() - 1),
      std::string(pinned_state_variable) + '=' + _root.path("state")};
  const std::vector<std::string> words = {BUTTONDRIVER_COUNTS_VALGRIND,
                                          "--tool=callgrind",
                                          "--fair-sched=yes",
                                          "--callgrind-out-file=" + _root.path("counts"),
                                          "--log-file=" + _root.path("valgrind"),
                                          program,
                                          "map",
                                          "",
                                          "0"};
  const OwnedDescriptor log(::open(_root.path("log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
  try {
    _process.emplace(words, variables, log.get());
    _port = _process->waitForPort();
  } catch (...) {
    ::munmap(_state, sizeof(PinnedState));
    throw;
  }
  _state->is_armed = 1;
}

CountedDaemon::~CountedDaemon() {
  // It would wait for the gate: nothing that it could still do is of use.
  ::kill(_process->pid(), SIGKILL);
  _process.reset();
  ::munmap(_state, sizeof(PinnedState));
}

void CountedDaemon::mapState(const std::string &file) {
  const OwnedDescriptor descriptor(::open(file.c_str(), O_RDWR | O_CLOEXEC));
  void *memory = MAP_FAILED;
  if (descriptor && ::ftruncate(descriptor.get(), sizeof(PinnedState)) == 0)
    memory = ::mmap(nullptr, sizeof(PinnedState), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor.get(), 0);
  if (memory == MAP_FAILED)
    throw std::runtime_error("no memory to share with the daemon in " + file);
  _state = static_cast<PinnedState *>(memory);
}

void CountedDaemon::waitUntilParked() const {
  const SleepingProcess process(_process->pid());
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (_state->gate != gate::parked || !process.sleeps()) {
    if (std::chrono::steady_clock::now() >= end)
      throw std::runtime_error("the daemon does not get on");
    // That all threads sleep the kernel tells nobody.
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
}

void CountedDaemon::command(std::uint32_t value) {
  waitUntilParked();
  _state->gate = value;
  wake(_state->gate);
  waitUntilParked();
}

void CountedDaemon::run() {
  command(gate::running);
  // The worker may have told the loop something, as that there is room for more tasks.
  const std::atomic<std::uint64_t> &rounds = _state->calls[static_cast<std::size_t>(Call::poll)];
  for (std::uint64_t before = 0; before != rounds;) {
    before = rounds;
    command(gate::look);
  }
}

double CountedDaemon::takeInstructions() {
  command(gate::dump);
  return callgrind_total(test::read_file(_root.path("counts." + std::to_string(++_dumps))));
}

} // namespace buttondriver::counts
