// SPDX-License-Identifier: Apache-2.0
#include "c_client/client.h"

#include "c_client/connection.h"
#include "c_client/outgoing.h"
#include "protocol/framing.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <limits>

using namespace buttondriver;

static_assert(BUTTONDRIVER_PORT == DEFAULT_PORT);

namespace {

/// Connects a new socket, which does not wait by itself; 0 or what errno would say.
int connect_until(int descriptor, const sockaddr_in &address, const Deadline &deadline) {
  const bool is_done = ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
  if (!is_done && errno != EINPROGRESS)
    return errno;
  if (!deadline.waitFor(descriptor, POLLOUT))
    return ETIMEDOUT;
  int error = 0;
  socklen_t size = sizeof error;
  ::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &size);
  return error;
}

buttondriver_result send_outgoing(buttondriver_client *client, const Outgoing &message) {
  if (!client)
    return BUTTONDRIVER_NULL_POINTER;
  if (message.result != BUTTONDRIVER_OK)
    return message.result;
  return send_message(*client, ByteView(message.head.data(), message.head_size), message.rest,
                      Deadline(client->timeout_ms));
}

} // namespace

buttondriver_result buttondriver_open(buttondriver_client *client, const char *host, std::int32_t port,
                                      std::int32_t timeout_ms) {
  if (!client)
    return BUTTONDRIVER_NULL_POINTER;
  *client = {};
  if (!host)
    return BUTTONDRIVER_NULL_POINTER;
  if (timeout_ms < 1)
    return BUTTONDRIVER_OUT_OF_RANGE;
  sockaddr_in address{};
  address.sin_family = AF_INET;
  if (port < 1 || port > std::numeric_limits<in_port_t>::max() || ::inet_pton(AF_INET, host, &address.sin_addr) != 1)
    return BUTTONDRIVER_BAD_ADDRESS;
  address.sin_port = htons(static_cast<in_port_t>(port));
  const Deadline deadline(timeout_ms);
  const int descriptor = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (descriptor == -1)
    return BUTTONDRIVER_CANNOT_CONNECT;
  if (const int error = connect_until(descriptor, address, deadline); error != 0) {
    ::close(descriptor);
    errno = error;
    return error == ETIMEDOUT ? BUTTONDRIVER_TIMED_OUT : BUTTONDRIVER_CANNOT_CONNECT;
  }
  // A ping waits for its answer, and a key for its light.
  const int without_delay = 1;
  ::setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &without_delay, sizeof without_delay);
  client->place = descriptor + 1;
  client->timeout_ms = timeout_ms;
  return BUTTONDRIVER_OK;
}

void buttondriver_close(buttondriver_client *client) {
  if (client && client->place != 0)
    drop(*client);
}

int buttondriver_is_open(const buttondriver_client *client) { return client && client->place != 0; }

buttondriver_result buttondriver_send(buttondriver_client *client, const buttondriver_message *message) {
  if (!client || !message || (!message->bytes && message->size > 0))
    return BUTTONDRIVER_NULL_POINTER;
  if (message->size == 0 || message->size > BUTTONDRIVER_LARGEST_MESSAGE)
    return BUTTONDRIVER_OUT_OF_RANGE;
  return send_message(*client, ByteView(static_cast<const std::uint8_t *>(message->bytes), message->size), {},
                      Deadline(client->timeout_ms));
}

buttondriver_result buttondriver_ping(buttondriver_client *client, std::int32_t timeout_ms, double *milliseconds) {
  if (!client)
    return BUTTONDRIVER_NULL_POINTER;
  if (timeout_ms < 1)
    return BUTTONDRIVER_OUT_OF_RANGE;
  const auto start = std::chrono::steady_clock::now();
  const Deadline deadline(timeout_ms);
  const Outgoing ping = outgoing_ping();
  buttondriver_result result = send_message(*client, ByteView(ping.head.data(), ping.head_size), ping.rest, deadline);
  if (result != BUTTONDRIVER_OK)
    return result;
  result = take_owed_answers(*client, deadline);
  if (result == BUTTONDRIVER_OK && milliseconds)
    *milliseconds = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  return result;
}

buttondriver_result buttondriver_text(buttondriver_client *client, std::int32_t screen, std::int32_t line,
                                      const char *text) {
  return send_outgoing(client, outgoing_text(screen, line, text, false));
}

buttondriver_result buttondriver_text_inverse(buttondriver_client *client, std::int32_t screen, std::int32_t line,
                                              const char *text) {
  return send_outgoing(client, outgoing_text(screen, line, text, true));
}

buttondriver_result buttondriver_text_part(buttondriver_client *client, std::int32_t screen, std::int32_t line,
                                           std::int32_t first, std::int32_t count, const char *text,
                                           std::uint32_t text_colour, std::uint32_t back_colour) {
  return send_outgoing(client, outgoing_text_part(screen, line, first, count, text, text_colour, back_colour));
}

buttondriver_result buttondriver_picture(buttondriver_client *client, std::int32_t screen, std::int32_t x,
                                         std::int32_t y, const void *bmp, std::size_t size) {
  return send_outgoing(client, outgoing_picture(screen, x, y, bmp, size));
}

buttondriver_result buttondriver_blackout(buttondriver_client *client, std::int32_t screen) {
  return send_outgoing(client, outgoing_blackout(screen));
}

buttondriver_result buttondriver_led(buttondriver_client *client, std::int32_t button, std::int32_t state) {
  return send_outgoing(client, outgoing_led(button, state));
}

buttondriver_result buttondriver_led_blink(buttondriver_client *client, std::int32_t button, std::int32_t phase_ms) {
  return send_outgoing(client, outgoing_led_blink(button, phase_ms));
}

buttondriver_result buttondriver_status(buttondriver_client *client, std::int32_t led, std::int32_t state) {
  return send_outgoing(client, outgoing_status(led, state));
}

buttondriver_result buttondriver_toggle(buttondriver_client *client, std::int32_t indicator, std::int32_t state) {
  return send_outgoing(client, outgoing_toggle(indicator, state));
}

buttondriver_result buttondriver_image(buttondriver_client *client, std::int32_t image_id, const void *image,
                                       std::size_t size) {
  return send_outgoing(client, outgoing_image(image_id, image, size));
}

buttondriver_result buttondriver_reconfig(buttondriver_client *client) {
  return send_outgoing(client, outgoing_reconfig());
}

buttondriver_result buttondriver_null(buttondriver_client *client) { return send_outgoing(client, outgoing_null()); }
