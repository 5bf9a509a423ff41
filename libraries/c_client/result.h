// SPDX-License-Identifier: Apache-2.0
#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// What came of a call. 0 is success, everything below is a failure; so `if (buttondriver_text(...) < 0)` reads well.
/// (The functions of event_client.h are the other way round: their 1 is "sent".)
typedef enum buttondriver_result {
  BUTTONDRIVER_OK = 0,
  BUTTONDRIVER_NULL_POINTER = -1,      ///< an argument that has to point somewhere is null
  BUTTONDRIVER_OUT_OF_RANGE = -2,      ///< an id, a state, a time, a colour or a size that does not exist
  BUTTONDRIVER_TEXT_TOO_LONG = -3,     ///< the message would be longer than BUTTONDRIVER_LARGEST_MESSAGE
  BUTTONDRIVER_NOT_A_PICTURE = -4,     ///< no uncompressed 24-bit BMP file, or not all of it
  BUTTONDRIVER_PICTURE_TOO_LARGE = -5, ///< the message would be longer than BUTTONDRIVER_LARGEST_MESSAGE
  BUTTONDRIVER_NO_ROOM = -6,           ///< the caller's buffer is too small for the message
  BUTTONDRIVER_BAD_ADDRESS = -7,       ///< no IPv4 address in dotted form, or no port
  BUTTONDRIVER_CANNOT_CONNECT = -8,    ///< there is no daemon at that address; errno says what the system said
  BUTTONDRIVER_NOT_CONNECTED = -9,     ///< the client is closed
  BUTTONDRIVER_CONNECTION_LOST = -10,  ///< the daemon is gone; the client is closed now
  BUTTONDRIVER_TIMED_OUT = -11,        ///< the daemon did not take or answer it in time
  BUTTONDRIVER_STRANGE_ANSWER = -12    ///< the other side is no buttondriver; the client is closed now
} buttondriver_result;

/// `result` in a few English words, without a full stop: "the daemon is gone". Lives as long as the program; never
/// null, also for a number that is no result. Any thread may call.
const char *buttondriver_error_text(buttondriver_result result);

#ifdef __cplusplus
}
#endif
