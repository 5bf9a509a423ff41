// SPDX-License-Identifier: Apache-2.0
#include "c_client/result.h"

const char *buttondriver_error_text(buttondriver_result result) {
  switch (result) {
  case BUTTONDRIVER_OK:
    return "no error";
  case BUTTONDRIVER_NULL_POINTER:
    return "an argument is a null pointer";
  case BUTTONDRIVER_OUT_OF_RANGE:
    return "an argument is out of range";
  case BUTTONDRIVER_TEXT_TOO_LONG:
    return "the text is too long";
  case BUTTONDRIVER_NOT_A_PICTURE:
    return "this is no complete, uncompressed 24-bit BMP file";
  case BUTTONDRIVER_PICTURE_TOO_LARGE:
    return "the picture is too large";
  case BUTTONDRIVER_NO_ROOM:
    return "the buffer is too small for the message";
  case BUTTONDRIVER_BAD_ADDRESS:
    return "this is no IPv4 address in dotted form with a port";
  case BUTTONDRIVER_CANNOT_CONNECT:
    return "there is no daemon at this address";
  case BUTTONDRIVER_NOT_CONNECTED:
    return "there is no connection";
  case BUTTONDRIVER_CONNECTION_LOST:
    return "the daemon is gone";
  case BUTTONDRIVER_TIMED_OUT:
    return "the daemon took too long";
  case BUTTONDRIVER_STRANGE_ANSWER:
    return "the other side is no buttondriver";
  }
  return "this is no result of buttondriver";
}
