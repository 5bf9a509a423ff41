// SPDX-License-Identifier: Apache-2.0
#include "fleet/running/bare_subscriber_process.h"

#include <fcntl.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace buttondriver::fleet {

namespace {

/// Throws std::runtime_error at the end of what comes.
std::string read_line(const OwnedDescriptor &descriptor) {
  std::string line;
  for (char c = 0; ::read(descriptor.get(), &c, 1) == 1; line += c)
    if (c == '\n')
      return line;
  throw std::runtime_error("the subscriber has ended");
}

} // namespace

BareSubscriberProcess::BareSubscriberProcess(std::uint16_t broker_port) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0)
    throw std::runtime_error("there is no pipe");
  _output.reset(ends[0]);
  const OwnedDescriptor writing(ends[1]);
  _process = std::make_unique<bench::ChildProcess>(
      std::vector<std::string>{BUTTONDRIVER_BARE_SUBSCRIBER, std::to_string(broker_port)}, std::vector<std::string>{},
      writing.get());
  read_line(_output);
}

BareSubscriberProcess::Seen BareSubscriberProcess::end() {
  _process->end();
  Seen seen;
  std::istringstream words(read_line(_output));
  if (!(words >> seen.messages >> seen.delays.median >> seen.delays.p99 >> seen.delays.longest))
    throw std::runtime_error("the subscriber tells nothing");
  return seen;
}

} // namespace buttondriver::fleet
