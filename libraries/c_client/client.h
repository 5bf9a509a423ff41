// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "messages.h"

/// @file
/// Drives the panel from any C or C++ program:
///
///     buttondriver_client panel;
///     buttondriver_result result = buttondriver_open(&panel, "127.0.0.1", BUTTONDRIVER_PORT, 3000);
///     if (result == BUTTONDRIVER_OK)
///       result = buttondriver_text(&panel, 0, 0, "Hello, panel");
///     if (result != BUTTONDRIVER_OK)
///       fprintf(stderr, "%s\n", buttondriver_error_text(result));
///     buttondriver_close(&panel);
///
/// Nothing is allocated, printed or kept outside of the client, and no signal is raised. A program may have several
/// clients. A client belongs to one thread at a time.
///
/// Each call sends its message at once, or waits for as long as buttondriver_open() was told when the daemon is busy.
/// BUTTONDRIVER_OK means that the system has taken the message; that the daemon has it, only a ping can tell, since
/// the protocol has no other answers. A message of which only a part could be sent in time closes the client: the
/// daemon could not tell where the next one begins. One of which nothing was sent may be sent again.
///
/// The client does not connect again by itself. Once it is closed, every call returns BUTTONDRIVER_NOT_CONNECTED until
/// buttondriver_open() has succeeded. A daemon that went away is noticed by the next call, unless it goes just then.

#ifdef __cplusplus
extern "C" {
#endif

/// The port of a daemon that was not given another one.
#define BUTTONDRIVER_PORT 3003

/// A connection to a daemon. It lives where the caller puts it. What is in it is the library's own. A client that is
/// all zeros is closed; a copy of an open one must not be used.
typedef struct buttondriver_client {
  int place;             ///< its descriptor and 1; 0 while it is closed
  int32_t timeout_ms;    ///< how long a call may wait
  uint32_t answers_owed; ///< pings that are not answered yet
  uint32_t answer_size;  ///< bytes of the next answer that are there
  uint8_t answer[8];     ///< these
} buttondriver_client;

/// Connects to the daemon at `host`, an IPv4 address in dotted form, and `port`, 1 to 65535. Whatever was in `client`
/// is overwritten: an open one has to be closed before. `timeout_ms`, 1 or more, is how long this call and each later
/// one may wait. When this fails, the client is closed.
buttondriver_result buttondriver_open(buttondriver_client *client, const char *host, int32_t port, int32_t timeout_ms);

/// Closes the connection; the daemon still gets what was sent. Does nothing with a closed client or a null pointer.
void buttondriver_close(buttondriver_client *client);

/// 1 when the client is open, as far as it knows; otherwise 0.
int buttondriver_is_open(const buttondriver_client *client);

/// Sends a message that one of the functions in messages.h has built, or any other one of 1 to
/// BUTTONDRIVER_LARGEST_MESSAGE bytes. What could not be built has none, and is out of range.
buttondriver_result buttondriver_send(buttondriver_client *client, const buttondriver_message *message);

/// Sends a ping and waits for its answer for `timeout_ms` milliseconds, 1 or more. The answer says that the daemon has
/// accepted all messages that this client sent before; the panel shows them a moment later. `milliseconds` gets the
/// time from the call to the answer; it may be null. After BUTTONDRIVER_TIMED_OUT the client stays open, and a late
/// answer is not taken for that of a later ping.
buttondriver_result buttondriver_ping(buttondriver_client *client, int32_t timeout_ms, double *milliseconds);

/// These send what their namesakes in messages.h build; arguments, ranges and errors stand there.
/// @{
buttondriver_result buttondriver_text(buttondriver_client *client, int32_t screen, int32_t line, const char *text);
buttondriver_result buttondriver_text_inverse(buttondriver_client *client, int32_t screen, int32_t line,
                                              const char *text);
buttondriver_result buttondriver_text_part(buttondriver_client *client, int32_t screen, int32_t line, int32_t first,
                                           int32_t count, const char *text, uint32_t text_colour, uint32_t back_colour);
buttondriver_result buttondriver_picture(buttondriver_client *client, int32_t screen, int32_t x, int32_t y,
                                         const void *bmp, size_t size);
buttondriver_result buttondriver_blackout(buttondriver_client *client, int32_t screen);
buttondriver_result buttondriver_led(buttondriver_client *client, int32_t button, int32_t state);
buttondriver_result buttondriver_led_blink(buttondriver_client *client, int32_t button, int32_t phase_ms);
buttondriver_result buttondriver_status(buttondriver_client *client, int32_t led, int32_t state);
buttondriver_result buttondriver_toggle(buttondriver_client *client, int32_t indicator, int32_t state);
buttondriver_result buttondriver_image(buttondriver_client *client, int32_t image_id, const void *image, size_t size);
buttondriver_result buttondriver_reconfig(buttondriver_client *client);
buttondriver_result buttondriver_null(buttondriver_client *client);
/// @}

#ifdef __cplusplus
}
#endif
