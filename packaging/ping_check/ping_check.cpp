// SPDX-License-Identifier: Apache-2.0
#include "packaging/ping_check/ping_check.h"

#include "files/owned_descriptor.h"
#include "protocol/converters.h"
#include "protocol/framing.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>

namespace buttondriver {

namespace {

using Clock = std::chrono::steady_clock;
using PingFrame = std::array<std::uint8_t, frame_prefix_size + sizeof(BMS_Ping)>;
static_assert(sizeof(BMS_PingReply) == sizeof(BMS_Ping));

template <class Record> PingFrame frame_of() {
  const Record record{Record::code};
  PingFrame frame{};
  const auto prefix = frame_prefix(sizeof record);
  std::memcpy(frame.data(), prefix.data(), prefix.size());
  host_to_network<Record>(frame.data() + prefix.size(), &record);
  return frame;
}

/// Whether `event` came before `end`; an error or a hang-up counts as any event.
bool comes(int descriptor, short event, Clock::time_point end) {
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    pollfd wanted{descriptor, event, 0};
    const int count = ::poll(&wanted, 1, left > 0 ? static_cast<int>(left) : 0);
    if (count != -1 || errno != EINTR)
      return count == 1;
  }
}

/// 0, or the reason as errno has it; ETIMEDOUT at `end`.
int connected(int descriptor, const addrinfo &place, Clock::time_point end) {
  if (::connect(descriptor, place.ai_addr, place.ai_addrlen) == 0)
    return 0;
  if (errno != EINPROGRESS)
    return errno;
  if (!comes(descriptor, POLLOUT, end))
    return ETIMEDOUT;
  int reason = 0;
  socklen_t size = sizeof reason;
  return ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &reason, &size) == 0 ? reason : errno;
}

std::string hexadecimal(const std::uint8_t *bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    std::array<char, 4> digits{};
    std::snprintf(digits.data(), digits.size(), " %02x", static_cast<unsigned>(bytes[i]));
    text += digits.data();
  }
  return text;
}

std::string fault_of_answer(int descriptor, Clock::time_point end) {
  const PingFrame ping = frame_of<BMS_Ping>();
  if (::send(descriptor, ping.data(), ping.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(ping.size()))
    return "it closes the connection";
  const PingFrame reply = frame_of<BMS_PingReply>();
  PingFrame answer{};
  std::size_t count = 0;
  while (count < answer.size()) {
    if (!comes(descriptor, POLLIN, end))
      return "it accepts connections and does not answer in time";
    const ssize_t more = ::recv(descriptor, answer.data() + count, answer.size() - count, 0);
    if (more <= 0)
      return "it closes the connection without an answer";
    count += static_cast<std::size_t>(more);
    if (std::memcmp(answer.data(), reply.data(), count) != 0)
      return "it is no buttondriver: it answers a ping with" + hexadecimal(answer.data(), count);
  }
  return {};
}

} // namespace

std::string fault_of(const PingCheck &check, const std::function<void()> &before_retry) {
  const Clock::time_point end = Clock::now() + check.time;
  addrinfo kind{};
  kind.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
  kind.ai_socktype = SOCK_STREAM;
  addrinfo *found = nullptr;
  if (const int reason = ::getaddrinfo(check.address.c_str(), check.port.c_str(), &kind, &found); reason != 0)
    return ::gai_strerror(reason);
  const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> place(found, ::freeaddrinfo);
  for (;;) {
    const OwnedDescriptor connection(
        ::socket(place->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, place->ai_protocol));
    const int reason = connection ? connected(connection.get(), *place, end) : errno;
    if (reason == 0)
      return fault_of_answer(connection.get(), end);
    if (reason != ECONNREFUSED)
      return std::string("it cannot be reached: ") + std::strerror(reason);
    if (Clock::now() >= end)
      return "nothing listens there";
    before_retry();
  }
}

} // namespace buttondriver
