// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/input_end.h"

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace buttondriver::simulator {

namespace {

constexpr std::size_t thrown_away_at_once = 4096;

} // namespace

InputEnd::InputEnd(int descriptor, std::function<void()> then)
    : _descriptor(descriptor), _then(std::move(then)), _readable(descriptor, QSocketNotifier::Read) {
  connect(&_readable, SIGNAL(activated(int)), this, SLOT(read()));
}

void InputEnd::read() {
  char unused[thrown_away_at_once];
  const ssize_t count = ::read(_descriptor, unused, sizeof unused);
  if (count > 0 || (count < 0 && (errno == EINTR || errno == EAGAIN)))
    return;
  // Also an error: a terminal that has been hung up gives EIO, and nothing more.
  _readable.setEnabled(false);
  _then();
}

} // namespace buttondriver::simulator
