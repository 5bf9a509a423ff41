// SPDX-License-Identifier: Apache-2.0
// Preloaded into the daemon: its register transfers come here instead of the kernel. Each takes its time, as that of a
// real panel does, and is told to the measuring program through shared memory.

#include "panel/registers/registers.h"
#include "panel/registers/transfer_record.h"
#include "support/device/device_log.h"

#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using namespace buttondriver;
using bench::DeviceLog;

DeviceLog *open_log() {
  const char *file = std::getenv(bench::device_log_variable);
  const int descriptor = file ? ::open(file, O_RDWR | O_CLOEXEC) : -1;
  const int flags = file ? MAP_SHARED : MAP_PRIVATE | MAP_ANONYMOUS;
  void *memory = ::mmap(nullptr, sizeof(DeviceLog), PROT_READ | PROT_WRITE, flags, descriptor, 0);
  if (memory == MAP_FAILED)
    std::abort();
  auto *log = static_cast<DeviceLog *>(memory);
  if (file)
    ::close(descriptor);
  else if (const char *time_us = std::getenv(bench::transfer_time_variable))
    log->transfer_ns = std::atoll(time_us) * 1000;
  return log;
}

DeviceLog &device_log() {
  static DeviceLog *const log = open_log();
  return *log;
}

void sleep_until(std::int64_t time_ns) {
  constexpr std::int64_t second_ns = 1'000'000'000;
  const timespec time{static_cast<std::time_t>(time_ns / second_ns), static_cast<long>(time_ns % second_ns)};
  while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) != 0) {
  }
}

void keep_led_command(DeviceLog &log, std::int64_t at_ns, std::uint32_t value) {
  const std::uint32_t place = log.led_commands;
  if (place < DeviceLog::room)
    log.led_command[place] = {at_ns, static_cast<std::uint8_t>(value >> 8)};
  log.led_commands = place + 1;
}

/// One thread at a time writes: the sum need not be made in one step, which would take longer.
template <class Number> void add(std::atomic<Number> &sum, Number more) {
  sum.store(sum.load(std::memory_order_relaxed) + more, std::memory_order_release);
}

int transfer(const panel::TransferRecord &record) {
  DeviceLog &log = device_log();
  const unsigned address = record.address_low & panel::short_form::address_mask;
  const bool is_led_command = record.count == 1 && address == panel::fpga_register::led_command;
  const std::int64_t length_ns = log.transfer_ns;
  // An instant device does not even look at the clock: what the daemon itself costs is measured with it.
  const std::int64_t start_ns = is_led_command || length_ns > 0 ? bench::now_ns() : 0;
  if (is_led_command)
    keep_led_command(log, start_ns, record.value);
  if (length_ns > 0) {
    sleep_until(start_ns + length_ns);
    add(log.busy_ns, bench::now_ns() - start_ns);
  }
  if (record.count > 1)
    add(log.pixel_runs, std::uint64_t{1});
  add(log.transfers, std::uint64_t{1});
  return 0;
}

} // namespace

// A name of its own in this file: how the system's headers declare the function depends on the machine.
extern "C" int panel_ioctl(int descriptor, unsigned long request, void *argument) __asm__("ioctl");

int panel_ioctl(int descriptor, unsigned long request, void *argument) {
  if (request == panel::short_form_request)
    return transfer(*static_cast<const panel::TransferRecord *>(argument));
  using Function = int (*)(int, unsigned long, void *);
  static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "ioctl"));
  return next(descriptor, request, argument);
}
