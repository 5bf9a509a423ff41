// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>

/// @file
/// Drives the panel from any C or C++ program over one plain TCP connection, without an event loop.
///
/// There is no object: the connection, the server's address and the cache belong to the process. Nothing is guarded;
/// all calls have to come from one thread.
///
/// Every function returns 1 when its message was handed to the socket completely, and 0 when it was not sent: no
/// connection, connected too recently to try again, a failed send, or a request that changes nothing.
///
/// Connection. A message connects when there is no connection, at most one attempt per 1000 ms of the wall clock (a
/// clock that is set back delays the next attempt until it has caught up). Until btc_set_server says otherwise the
/// server is 127.0.0.1 port 3003. A message that could not be sent is lost; nothing is queued. The server's replies are
/// never read. One attempt, and each of a message's two sends, waits at most 3 seconds for the peer, after which it
/// has failed; a send that failed or was cut short closes the connection.
///
/// Cache. For the button ids 0 to 299 a request that would change nothing is not sent; BTC_ALL_BUTTONS is always sent
/// and noted for all of them; every other id is always sent and never noted. A request is noted before it is sent, and
/// every new connection clears the cache. So a request that failed is skipped when it is repeated, until another
/// message has connected again; and a request that itself connected is sent once more when it is repeated.
///
/// Of these messages, the daemon of this project handles those of btc_upload_image and btc_reconfig. The others are for
/// daemons that know them: this one reports each as unhandled in its log, and nothing else happens. c_client/messages.h
/// builds all that it does handle, for btc_send.
///
/// Output goes to standard output and, but for one message of btc_upload_image, only after btc_verbose_on.

#ifdef __cplusplus
extern "C" {
#endif

/// In place of one button.
#define BTC_ALL_BUTTONS UINT32_C(0xFFFFFFFF)

/// Names the server and tries to connect to it, at the pace described above. `host` is an IPv4 address in dotted form,
/// of which at most 256 characters are kept (a null pointer is an empty text); names are not resolved. `port` is 0 to
/// 65535; of other values the low 16 bits are asked for. A connection that exists stays as it is, and 1 is returned:
/// the new server is used once that connection is lost.
int btc_set_server(const char *host, int32_t port);

/// Connects unless connected. Returns 1 when there is a connection. A new one clears the cache.
int btc_connect(void);

/// Sends one message in network order, its length in front; `message` holds `length` bytes. Connects first where there
/// is no connection. The cache is not asked.
int btc_send(const void *message, uint32_t length);

/// Sets a button's colour; the daemon reports this message as unhandled. Skipped when the button has this colour and no
/// second time.
int btc_set_colour(uint32_t button_id, uint8_t value_1, uint8_t value_2, uint8_t value_3);

/// Sets two colours that alternate; the daemon reports this message as unhandled. Skipped when all eight values are
/// what was last sent.
int btc_set_colour_pair(uint32_t button_id, uint8_t first_value_1, uint8_t first_value_2, uint8_t first_value_3,
                        uint32_t first_time, uint8_t second_value_1, uint8_t second_value_2, uint8_t second_value_3,
                        uint32_t second_time);

/// Sets a button's text; the daemon reports this message as unhandled. `text` ends with a NUL, a null pointer is an
/// empty text. Skipped when text and value are what was last sent. The cache keeps 100 characters: a longer text is
/// always sent, and counts as its first 100 characters when the next text is compared. On a fresh connection every
/// button counts as having an empty text with value 0.
int btc_set_text(uint32_t button_id, const char *text, uint32_t text_value);

/// Uploads a picture; `image` holds `size` bytes, which must be 120: 24 rows of 40 one-bit pixels. Any other size is
/// reported on standard output, verbose or not, and not sent, nor is a null pointer. In each case a button that showed
/// the image counts as showing an unknown one.
int btc_upload_image(int32_t image_id, const void *image, int32_t size);

/// Shows an image on a button; the daemon reports this message as unhandled. Skipped when the button shows it; image -1
/// stands for an unknown one and is skipped when the button's image is unknown.
int btc_set_image(uint32_t button_id, int32_t image_id);

/// Sends two values as they are; the daemon reports this message as unhandled.
int btc_set_value(uint32_t value_1, uint32_t value_2);

/// Sends parameter 8 with value 0; the daemon reports this message as unhandled. The client's own output stays as it
/// is.
int btc_parameter_off(void);

/// Switches the client's own output on, then sends parameter 9 with value 1; the daemon reports this message as
/// unhandled.
int btc_verbose_on(void);

/// Makes the server read its button level file again.
int btc_reconfig(void);

#ifdef __cplusplus
}
#endif
