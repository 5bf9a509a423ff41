// SPDX-License-Identifier: Apache-2.0
#include "c_client/connection.h"

#include "protocol/framing.h"
#include "protocol/records.h"

#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace buttondriver {

namespace {

/// What one attempt to read came to. No attempt waits, so none is interrupted by a signal.
enum class Reading { some, nothing_yet, ended };

int descriptor_of(const buttondriver_client &client) { return client.place - 1; }

constexpr std::size_t answer_size = frame_prefix_size + type_of<BMS_PingReply>.head_size;
static_assert(sizeof buttondriver_client::answer == answer_size);

bool is_ping_reply(ByteView frame) {
  return frame.bigEndian32(0) == type_of<BMS_PingReply>.head_size &&
         frame.bigEndian32(frame_prefix_size) == BMS_PingReply::code;
}

/// Reads on in the answer that is coming, without waiting.
Reading read_some(buttondriver_client &client) {
  const ssize_t count =
      ::recv(descriptor_of(client), client.answer + client.answer_size, answer_size - client.answer_size, MSG_DONTWAIT);
  if (count > 0) {
    client.answer_size += static_cast<std::uint32_t>(count);
    return Reading::some;
  }
  return count == -1 && errno == EAGAIN ? Reading::nothing_yet : Reading::ended;
}

/// Takes the answers that are there already. So the end of a connection is noticed, and answers do not pile up.
buttondriver_result take_answers(buttondriver_client &client) {
  for (;;) {
    const Reading reading = read_some(client);
    if (reading == Reading::nothing_yet)
      return BUTTONDRIVER_OK;
    if (reading == Reading::ended) {
      drop(client);
      return BUTTONDRIVER_CONNECTION_LOST;
    }
    if (client.answer_size < answer_size)
      continue;
    client.answer_size = 0;
    if (!is_ping_reply(ByteView(client.answer, answer_size)) || client.answers_owed == 0) {
      drop(client);
      return BUTTONDRIVER_STRANGE_ANSWER;
    }
    --client.answers_owed;
  }
}

/// Leaves out the first `count` bytes of `parts`.
void advance(std::array<iovec, 3> &parts, std::size_t count) {
  for (iovec &part : parts) {
    const std::size_t taken = std::min(count, part.iov_len);
    if (taken > 0)
      part.iov_base = static_cast<char *>(part.iov_base) + taken;
    part.iov_len -= taken;
    count -= taken;
  }
}

iovec part_of(ByteView bytes) { return {const_cast<std::uint8_t *>(bytes.data()), bytes.size()}; }

} // namespace

bool Deadline::waitFor(int descriptor, short events) const {
  pollfd place{descriptor, events, 0};
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(_end - Clock::now()).count();
    const int ready = ::poll(&place, 1, static_cast<int>(std::max<std::int64_t>(left, 0)));
    if (ready > 0)
      return true;
    // A signal came, or the wait ended early.
    if (left <= 0)
      return false;
  }
}

void drop(buttondriver_client &client) {
  ::close(descriptor_of(client));
  client = {};
}

buttondriver_result send_message(buttondriver_client &client, ByteView head, ByteView rest, const Deadline &deadline) {
  if (client.place == 0)
    return BUTTONDRIVER_NOT_CONNECTED;
  if (const buttondriver_result result = take_answers(client); result != BUTTONDRIVER_OK)
    return result;
  const auto prefix = frame_prefix(static_cast<std::uint32_t>(head.size() + rest.size()));
  std::array<iovec, 3> parts{part_of({prefix.data(), prefix.size()}), part_of(head), part_of(rest)};
  msghdr message{};
  message.msg_iov = parts.data();
  message.msg_iovlen = parts.size();
  const std::size_t all = prefix.size() + head.size() + rest.size();
  std::size_t sent = 0;
  while (sent < all) {
    const ssize_t count = ::sendmsg(descriptor_of(client), &message, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count >= 0) {
      sent += static_cast<std::size_t>(count);
      advance(parts, static_cast<std::size_t>(count));
      continue;
    }
    if (errno != EAGAIN) {
      drop(client);
      return BUTTONDRIVER_CONNECTION_LOST;
    }
    if (!deadline.waitFor(descriptor_of(client), POLLOUT)) {
      if (sent > 0)
        drop(client);
      return BUTTONDRIVER_TIMED_OUT;
    }
  }
  if (head.bigEndian32(0) == BMS_Ping::code)
    ++client.answers_owed;
  return BUTTONDRIVER_OK;
}

buttondriver_result take_owed_answers(buttondriver_client &client, const Deadline &deadline) {
  for (;;) {
    if (const buttondriver_result result = take_answers(client); result != BUTTONDRIVER_OK)
      return result;
    if (client.answers_owed == 0)
      return BUTTONDRIVER_OK;
    if (!deadline.waitFor(descriptor_of(client), POLLIN))
      return BUTTONDRIVER_TIMED_OUT;
  }
}

} // namespace buttondriver
