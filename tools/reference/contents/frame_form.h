// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver::documents {

inline constexpr const char *frame_introduction =
    "Every message stands in a frame: its length in bytes, then the message.";

inline constexpr const char *frame_drawing = R"(offset   0   1   2   3   4   5   6   7   8                      L + 4
       +---+---+---+---+---+---+---+---+---+---+-- - - - --+---+
       |   length L    |    opcode     |  fields, then text,   |
       |  of message   |               |  picture or ids       |
       +---+---+---+---+---+---+---+---+---+---+-- - - - --+---+
                       |<----------- message, L bytes -------->|
)";

/// In Markdown, a paragraph each.
inline constexpr const char *frame_notes[] = {
    "All integers are big-endian; \"i32\" is in two's complement.",
    "L counts the message only, not itself. There is no magic, version, checksum or terminator. How large it\n"
    "  may be stands with the other [limits](#limits).",
    "Offsets below count from the first byte of the message, which is its opcode.",
    "Frames follow each other directly; TCP may cut the stream anywhere.",
    "The one reply that a client ever gets is `BMS_PingReply`. Whatever is wrong with a message is told in the "
    "daemon's\n"
    "  log; the connection stays open.",
};

} // namespace buttondriver::documents
