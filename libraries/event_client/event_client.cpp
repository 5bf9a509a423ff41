// SPDX-License-Identifier: Apache-2.0
#include "event_client/event_client.h"

#include "dimensions/panel_dimensions.h"
#include "event_client/button_cache.h"
#include "event_client/event_client_testing.h"
#include "logging/standard_output.h"
#include "protocol/converters.h"
#include "protocol/framing.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <exception>
#include <limits>
#include <string_view>
#include <vector>

namespace buttondriver {

namespace {

constexpr double attempt_interval_ms = 1000.0;
/// Long enough for one lost packet and for a server busy with a picture.
constexpr int usual_longest_wait_ms = 3000;
constexpr std::size_t host_capacity = 256;
/// A sender that waits is woken when a third of the kernel's buffer is free. By itself the buffer grows to megabytes,
/// of which a slow server does not take a third in time.
constexpr int send_buffer_bytes = 64 * 1024;

struct ClientState {
  int descriptor = -1; ///< the TCP socket, -1 when there is none
  std::int32_t port = DEFAULT_PORT;
  char host[host_capacity + 1] = "127.0.0.1"; ///< always ends with a NUL
  bool verbose = false;
  bool connected = false;
  double last_attempt_ms = 0;
  ButtonCache cache;
};

int connect_socket(int descriptor, const sockaddr *address, socklen_t size) {
  return ::connect(descriptor, address, size);
}
int read_clock(timeval *now, void *) { return ::gettimeofday(now, nullptr); }

constexpr EventClientCalls system_calls{read_clock, ::socket, connect_socket, ::send, usual_longest_wait_ms};

ClientState state;
EventClientCalls calls = system_calls;

double now_ms() {
  timeval now{};
  calls.gettimeofday(&now, nullptr);
  return static_cast<double>(now.tv_sec) * 1000.0 + static_cast<double>(now.tv_usec) * 0.001;
}

/// Repeats a call that a signal interrupted before it did anything. Signals that keep coming do not make it last.
template <class Call> auto repeat_when_interrupted(Call call) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(calls.longest_wait_ms);
  auto result = call();
  while (result == -1 && errno == EINTR && std::chrono::steady_clock::now() < deadline)
    result = call();
  return result;
}

int open_socket() {
  const int descriptor = calls.socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor == -1)
    return -1;
  // Bounds connect as well as send; a peer that stalls must not stall its client for good.
  timeval limit{};
  limit.tv_sec = calls.longest_wait_ms / 1000;
  limit.tv_usec = calls.longest_wait_ms % 1000 * 1000;
  ::setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &limit, sizeof limit);
  ::setsockopt(descriptor, SOL_SOCKET, SO_SNDBUF, &send_buffer_bytes, sizeof send_buffer_bytes);
  // A message is two small sends; the second would wait for the acknowledgement of the first.
  const int without_delay = 1;
  ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &without_delay, sizeof without_delay);
  return descriptor;
}

/// Makes the connection of the socket that is there; when that fails, the socket is as good as new.
bool reach_server() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = ::inet_addr(state.host);
  if (address.sin_addr.s_addr == INADDR_NONE)
    return false;
  address.sin_port = htons(static_cast<in_port_t>(state.port));

  const int result = repeat_when_interrupted([&address] {
    return calls.connect(state.descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
  });
  if (result == 0)
    return true;
  if (errno == EINPROGRESS || errno == EALREADY || errno == EINTR) {
    // The kernel would go on with this attempt, and the next one may be meant for another server.
    sockaddr nowhere{};
    nowhere.sa_family = AF_UNSPEC;
    static_cast<void>(::connect(state.descriptor, &nowhere, sizeof nowhere));
  }
  return false;
}

ssize_t send_once(const void *bytes, std::size_t count) {
  return repeat_when_interrupted([=] { return calls.send(state.descriptor, bytes, count, MSG_NOSIGNAL); });
}

void drop_connection() {
  state.connected = false;
  ::close(state.descriptor);
  state.descriptor = -1;
}

/// Sends a message of fixed size, given in host order.
template <class Record> int send_message(Record message) {
  static_assert(type_of<Record>.counted == Counted::nothing);
  host_to_network<Record>(&message, &message);
  return btc_send(&message, static_cast<std::uint32_t>(message_size<Record>()));
}

int send_text(std::uint32_t button_id, std::string_view text, std::uint32_t text_value) {
  using Record = BMS_SetButtonText;
  constexpr std::size_t head_size = type_of<Record>.head_size;
  // The lengths on the wire have 32 bits.
  if (text.size() >= std::numeric_limits<std::uint32_t>::max() - head_size)
    return 0;
  const auto n = static_cast<std::uint32_t>(text.size() + 1);
  const Record head{Record::code, button_id, text_value, n};
  std::vector<char> message(head_size + n);
  std::memcpy(message.data(), &head, head_size);
  text.copy(message.data() + head_size, text.size());
  hton_BMS_SetButtonText(message.data(), message.data());
  return btc_send(message.data(), static_cast<std::uint32_t>(message.size()));
}

} // namespace

EventClientCalls event_client_system_calls() { return system_calls; }

void replace_event_client_calls(const EventClientCalls &replacement) { calls = replacement; }

void reset_event_client() {
  if (state.descriptor != -1)
    drop_connection();
  state = ClientState{};
  calls = system_calls;
}

} // namespace buttondriver

using namespace buttondriver;

int btc_set_server(const char *host, std::int32_t port) {
  const std::size_t length = host ? ::strnlen(host, host_capacity) : 0;
  if (length > 0)
    std::memmove(state.host, host, length);
  state.host[length] = '\0';
  state.port = port;
  return btc_connect();
}

int btc_connect() {
  if (state.descriptor == -1)
    state.descriptor = open_socket();
  if (state.connected)
    return 1;
  const double now = now_ms();
  const double elapsed = now - state.last_attempt_ms;
  if (elapsed < attempt_interval_ms) {
    if (state.verbose)
      print("connect later, since last attempt elapsed only %.2f ms\n", elapsed);
    return 0;
  }
  state.last_attempt_ms = now;
  if (state.verbose)
    print("try to connect to %s:%d\n", state.host, state.port);
  if (!reach_server()) {
    if (state.verbose)
      print("btc failed to connect to server %s:%d\n", state.host, state.port);
    return 0;
  }
  state.connected = true;
  if (state.verbose)
    print("btc connected to server %s:%d\n", state.host, state.port);
  state.cache.clear();
  return 1;
}

int btc_send(const void *message, std::uint32_t length) {
  if (!state.connected && !btc_connect()) {
    if (state.verbose)
      print_line(" could not connect");
    return 0;
  }
  if (state.descriptor == -1) {
    if (state.verbose)
      print("invalid socket");
    return 0;
  }
  const auto prefix = frame_prefix(length);
  const ssize_t prefix_sent = send_once(prefix.data(), prefix.size());
  const ssize_t message_sent = send_once(message, length);
  // 64 bits, since a length near the largest and its prefix do not fit into 32.
  const std::int64_t sent = std::int64_t{prefix_sent} + message_sent;
  if (sent != std::int64_t{length} + frame_prefix_size) {
    if (state.verbose)
      print("send failed %d\n", static_cast<int>(sent));
    drop_connection();
    return 0;
  }
  return 1;
}

int btc_set_colour(std::uint32_t button_id, std::uint8_t value_1, std::uint8_t value_2, std::uint8_t value_3) {
  if (!state.cache.takeColour(button_id, {value_1, value_2, value_3}))
    return 0;
  return send_message(BMS_SetButtonColour{BMS_SetButtonColour::code, button_id, value_1, value_2, value_3, 0});
}

int btc_set_colour_pair(std::uint32_t button_id, std::uint8_t first_value_1, std::uint8_t first_value_2,
                        std::uint8_t first_value_3, std::uint32_t first_time, std::uint8_t second_value_1,
                        std::uint8_t second_value_2, std::uint8_t second_value_3, std::uint32_t second_time) {
  const ButtonColourPair pair{{first_value_1, first_value_2, first_value_3},
                              first_time,
                              {second_value_1, second_value_2, second_value_3},
                              second_time};
  if (!state.cache.takeColourPair(button_id, pair))
    return 0;
  return send_message(BMS_SetButtonColourPair{BMS_SetButtonColourPair::code, button_id, first_value_1, first_value_2,
                                              first_value_3, 0, first_time, second_value_1, second_value_2,
                                              second_value_3, 0, second_time, 0});
}

int btc_set_text(std::uint32_t button_id, const char *text, std::uint32_t text_value) {
  const std::string_view characters = text ? text : "";
  if (!state.cache.takeText(button_id, characters, text_value))
    return 0;
  try {
    return send_text(button_id, characters, text_value);
  } catch (const std::exception &) {
    // Out of memory; a C caller cannot catch that.
    return 0;
  }
}

int btc_upload_image(std::int32_t image_id, const void *image, std::int32_t size) {
  state.cache.forgetImage(image_id);
  if (size != dimensions::button_image_bytes) {
    print("wrong image data size %d, must be 120\n", size);
    return 0;
  }
  if (!image)
    return 0;
  BMS_UploadImage message{BMS_UploadImage::code, image_id, size, {}};
  std::memcpy(message.image, image, sizeof message.image);
  return send_message(message);
}

int btc_set_image(std::uint32_t button_id, std::int32_t image_id) {
  if (!state.cache.takeImage(button_id, image_id))
    return 0;
  return send_message(BMS_SetButtonImage{BMS_SetButtonImage::code, button_id, static_cast<std::uint32_t>(image_id)});
}

int btc_set_value(std::uint32_t value_1, std::uint32_t value_2) {
  return send_message(BMS_SetValue{BMS_SetValue::code, value_1, value_2});
}

int btc_parameter_off() { return send_message(BMS_SetParameter{BMS_SetParameter::code, 8, 0}); }

int btc_verbose_on() {
  state.verbose = true;
  return send_message(BMS_SetParameter{BMS_SetParameter::code, 9, 1});
}

int btc_reconfig() { return send_message(BMS_Reconfig{BMS_Reconfig::code, 0}); }
