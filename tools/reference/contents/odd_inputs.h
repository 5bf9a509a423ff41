// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver::documents {

/// Input that is no proper message, in Markdown.
struct OddInput {
  const char *arrives;
  const char *happens;
};

inline constexpr const char *odd_inputs_title = "Input that is no proper message";
inline constexpr const char *odd_inputs_introduction =
    "Nothing that a client sends makes the daemon close the connection.";

inline constexpr OddInput odd_inputs[] = {
    {"part of a frame",
     "waits for the rest; what has arrived so far is not acted upon, and is dropped when the connection ends"},
    {"complete frames, then the end of the connection", "acts on the frames first"},
    {"a length of 0", "takes it as an empty message, which reads as opcode 0 with a size of 0"},
    {"a message shorter than its layout", "acts on it as if zero bytes followed, in the opcode too"},
    {"a message longer than its layout",
     "leaves the rest alone; of opcode 19 all that follows the head is the picture, of opcode 0 all bytes are logged"},
    {"a text count larger than the text that is there", "takes the text up to its first NUL or the end of the message"},
    {"a text without a NUL", "takes as many bytes as the count says"},
    {"an opcode that clients can build and the daemon does not handle",
     "logs `ButtonSetterImpl::process_messages, unhandled switch case ` and the opcode at critical level"},
    {"an opcode that does not exist", "the same"},
    {"a length of 0xFFFFFFFC or more",
     "adds the 4 bytes of the length to it in 32 bits, which wraps to 0 to 3: does not wait, and takes all that has "
     "arrived after the length at that moment as one message"},
    {"a length that the bytes never reach",
     "waits for good, takes what that connection goes on to send for the message, and serves the other connections"},
    {"a length beyond the [limit](#limits), up to 0xFFFFFFFB", "is skipped, and what follows it is read as usual"},
};

} // namespace buttondriver::documents
