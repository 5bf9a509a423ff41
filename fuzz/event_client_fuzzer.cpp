// SPDX-License-Identifier: Apache-2.0
// The event client, called in any way, against a system and a peer that do what they like.
//
// Input, from the end: numbers only. Each call of the client takes one that says which, then its arguments; each call
// that the client makes of the system takes one byte that says how it ends.
#include "bytes/byte_view.h"
#include "event_client/event_client.h"
#include "event_client/event_client_testing.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/input.h"
#include "fuzz/support/quiet.h"
#include "fuzz/support/require.h"
#include "protocol/catalogue.h"
#include "protocol/framing.h"

#include <cerrno>
#include <fcntl.h>
#include <netinet/in.h>
#include <string>
#include <unistd.h>

namespace buttondriver::fuzz {

namespace {

/// Nothing waits: an input that interrupts every call ends, and then calls succeed.
constexpr int longest_wait_ms = 1000;
constexpr int connect_errors[] = {ECONNREFUSED, EINPROGRESS, EALREADY, EINTR, ETIMEDOUT, EISCONN, EAGAIN, EBADF};
constexpr int send_errors[] = {EINTR, EAGAIN, EPIPE, ECONNRESET, ENOTCONN, EBADF, ENOBUFS, EINTR};

/// What the peer of one connection has got.
std::string received;
std::int64_t now_us = 0;
Input *input = nullptr;

std::uint8_t fate() { return input->number<std::uint8_t>(); }

int hostile_clock(timeval *now, void *) {
  // Also a clock that is set back.
  now_us += input->number<std::int16_t>() * std::int64_t{1000};
  now->tv_sec = static_cast<time_t>(now_us / 1'000'000);
  now->tv_usec = static_cast<suseconds_t>(now_us % 1'000'000);
  return 0;
}

int hostile_socket(int, int, int) {
  if (fate() == 1) {
    errno = EMFILE;
    return -1;
  }
  return ::open("/dev/null", O_RDWR | O_CLOEXEC);
}

int hostile_connect(int descriptor, const sockaddr *address, socklen_t size) {
  require(size == sizeof(sockaddr_in) && address->sa_family == AF_INET, "an address is complete");
  received.clear();
  if (descriptor < 0) {
    errno = EBADF;
    return -1;
  }
  const std::uint8_t how = fate();
  if (how % 4 != 1)
    return 0;
  errno = connect_errors[how / 4 % 8];
  return -1;
}

ssize_t hostile_send(int descriptor, const void *bytes, std::size_t count, int flags) {
  require(descriptor >= 0, "nothing is sent without a socket");
  require((flags & MSG_NOSIGNAL) != 0, "a peer that hangs up is no signal");
  const std::uint8_t how = fate();
  if (how % 4 == 1) {
    errno = send_errors[how / 4 % 8];
    return -1;
  }
  const std::size_t accepted = how % 4 == 2 ? std::min<std::size_t>(count, how / 4) : count;
  received.append(static_cast<const char *>(bytes), accepted);
  return static_cast<ssize_t>(accepted);
}

std::string text(std::size_t most) {
  const std::size_t length = input->number<std::uint16_t>() % (most + 1);
  const char letter = static_cast<char>(input->number<std::uint8_t>());
  return std::string(length, letter == 0 ? 'a' : letter);
}

/// A message of the catalogue, whole, and its length in front of it. `raw_size` is the size of a message that the
/// caller made himself; 0 for the client's own.
void require_frame(std::string_view frame, std::size_t raw_size) {
  const ByteView bytes(frame.data(), frame.size());
  const ByteView message = bytes.from(frame_prefix_size);
  require(frame.size() >= frame_prefix_size && bytes.bigEndian32(0) == message.size(),
          "a length is that of its message");
  if (raw_size > 0) {
    require(message.size() == raw_size, "a message is sent as it is");
    return;
  }
  const MessageType *type = find_message_type(message.bigEndian32(0));
  require(type != nullptr, "only messages of the catalogue are sent");
  const std::uint32_t count = type->counted == Counted::nothing ? 0 : message.bigEndian32(type->countField().offset);
  require(message.size() == type->size(count), "a message has the size that the catalogue says");
}

struct Outcome {
  int result;
  std::size_t raw_size = 0;
  bool sends = true;
};

Outcome call_client() {
  const auto u8 = [] { return input->number<std::uint8_t>(); };
  const auto u32 = [] { return input->number<std::uint32_t>(); };
  // Mostly buttons that have a record, now and then all others.
  const auto button = [&] {
    const auto id = input->number<std::uint16_t>();
    return id == 0xFFFF ? BTC_ALL_BUTTONS : std::uint32_t{id};
  };
  switch (u8() % 12) {
  case 0: {
    const std::uint8_t kind = u8() % 4;
    const std::string host = kind == 1 ? text(400) : "127.0.0.1";
    return {btc_set_server(kind == 2 ? nullptr : host.c_str(), input->number<std::int32_t>()), 0, false};
  }
  case 1:
    return {btc_connect(), 0, false};
  case 2: {
    const std::string message = text(300) + 'x';
    return {btc_send(message.data(), static_cast<std::uint32_t>(message.size())), message.size()};
  }
  case 3: {
    const std::uint32_t id = button();
    const std::uint8_t values[] = {u8(), u8(), u8()};
    return {btc_set_colour(id, values[0], values[1], values[2])};
  }
  case 4: {
    const std::uint32_t id = button();
    const std::uint8_t values[] = {u8(), u8(), u8(), u8(), u8(), u8()};
    const std::uint32_t times[] = {u32(), u32()};
    return {
        btc_set_colour_pair(id, values[0], values[1], values[2], times[0], values[3], values[4], values[5], times[1])};
  }
  case 5: {
    const std::uint32_t id = button();
    const std::uint8_t value = u8();
    const std::string words = text(300);
    return {btc_set_text(id, value == 1 ? nullptr : words.c_str(), value)};
  }
  case 6: {
    const auto id = input->number<std::int8_t>();
    const std::vector<std::uint8_t> image(120, u8());
    const std::uint8_t fault = u8();
    const std::int32_t size = fault == 1 ? input->number<std::int32_t>() : 120;
    return {btc_upload_image(id, fault == 2 ? nullptr : image.data(), size)};
  }
  case 7: {
    const std::uint32_t id = button();
    return {btc_set_image(id, input->number<std::int8_t>())};
  }
  case 8: {
    const std::uint32_t values[] = {u32(), u32()};
    return {btc_set_value(values[0], values[1])};
  }
  case 9:
    return {btc_parameter_off()};
  case 10:
    return {btc_verbose_on()};
  default:
    return {btc_reconfig()};
  }
}

void run(Input bytes) {
  input = &bytes;
  now_us = 1'000'000'000'000;
  reset_event_client();
  replace_event_client_calls({hostile_clock, hostile_socket, hostile_connect, hostile_send, longest_wait_ms});
  while (!bytes.empty()) {
    received.clear();
    const Outcome outcome = call_client();
    require(outcome.result == 0 || outcome.result == 1, "a result is 0 or 1");
    if (outcome.result == 1 && outcome.sends)
      require_frame(received, outcome.raw_size);
  }
  reset_event_client();
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const bool is_quiet = (buttondriver::fuzz::drop_standard_output(), true);
  static_cast<void>(is_quiet);
  buttondriver::fuzz::run({data, size});
  return 0;
}
