// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tools/reference/contents/worked_example.h"

#include <iterator>

namespace buttondriver::documents {

/// Examples of the messages that the daemon handles or sends, in opcode order. One for each message is enough; a
/// message may do without.
inline constexpr WorkedExample worked_examples[] = {
    {0, "a message of nothing but zeros", "00 00 00 04 00 00 00 00",
     "Two lines at critical level, the second with the message's size, then one line a byte, `data[0] = 0x0` and so "
     "on, on standard output. The message may have any size; all its bytes are shown."},
    {1, "the answer to one ping", "00 00 00 04 00 00 00 01",
     "Sent to the connection that the ping came from, one answer a ping, in the order of the pings. The daemon itself "
     "reports a `BMS_PingReply` that it gets as unhandled."},
    {6, "image 23 shows a frame, one pixel wide",
     "00 00 00 84 00 00 00 06 00 00 00 17 00 00 00 78 "
     "ff ff ff ff ff 80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 "
     "80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 "
     "80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 "
     "80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 "
     "80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 "
     "80 00 00 00 01 80 00 00 00 01 80 00 00 00 01 ff ff ff ff ff",
     "The image is kept; nothing is shown on the panel. The first connection since the start adds 1000 to ids above "
     "22, the second 2000, and so on: here standard output says `buttondriver:image uploaded 1023`. A `size` other "
     "than 120 is refused with `invalid image data, size = 119` and `buttondriver:failed to upload image 23`."},
    {10, "the level file has changed", "00 00 00 08 00 00 00 0a 00 00 00 00",
     "The level file is read again; each of its `scr` lines sets the brightness of the screens. `reserved` is not "
     "looked at."},
    {12, "the daemon is asked whether it is there", "00 00 00 04 00 00 00 0c",
     "The answer is `00 00 00 04 00 00 00 01`. It is sent when the message is read, not when the work asked for before "
     "it is done."},
    {15, "\"Ready\" in white on black, in the third line of screen 0",
     "00 00 00 1a 00 00 00 0f 00 00 00 00 00 00 00 02 00 00 00 01 00 00 00 06 52 65 61 64 79 00",
     "The text is drawn over the whole width of the line; what does not fit is dropped. It ends at its first NUL, or "
     "after `n` bytes, or with the message, whichever comes first. A line outside the screen is not dropped: each "
     "edge of its window is held at the screen's on its own side only, and of each the low 8 bits are sent. With 16 "
     "pixel rows to a line, lines 8 to 15 are not seen, line 16 is drawn over line 0, line 17 over line 1, and so on; "
     "lines above the first one begin in its first row."},
    {16, "all three screens", "00 00 00 08 00 00 00 10 ff ff ff ff",
     "The screens turn black. Any other screen id is reported as `Invalid screen ID 3.` when the work is done."},
    {17, "button 5 blinks, half a second on, half a second off",
     "00 00 00 10 00 00 00 11 00 00 00 05 ff ff ff ff 00 00 01 f4",
     "The LED goes off with the next blink tick, on 25 ticks of 20 ms later, and so on until the button gets a steady "
     "state. Blinking with a time of 0 is refused with a text on standard output, and so is an id that is no "
     "button's."},
    {18, "\"12.5\" in red on black, from the fourth character of the first line of screen 1 on",
     "00 00 00 25 00 00 00 12 00 00 00 01 00 00 00 00 00 00 00 03 00 00 00 04 00 ff 00 00 00 00 00 00 "
     "00 00 00 05 31 32 2e 35 00",
     "`_num_chars` characters are drawn; blanks stand for those past the end of the text. Outside of the characters' "
     "own bitmaps, the background is the low byte of the 16-bit pixel twice: black and white come out exact. Lines "
     "outside the screen are drawn as those of opcode 15. Characters beyond its right edge are drawn in the same way: "
     "with 8 pixel columns to a character, those from `_offset` 32 on begin in the first column, in a window as wide "
     "as the screen, which their pixels fill row by row."},
    {19, "a picture of 2 x 2 pixels, red and green above blue and white, in the middle of screen 2",
     "00 00 00 5a 00 00 00 13 00 00 00 02 00 00 00 3f 00 00 00 3f 00 00 00 46 "
     "42 4d 46 00 00 00 00 00 00 00 36 00 00 00 28 00 00 00 02 00 00 00 02 00 00 00 01 00 18 00 "
     "00 00 00 00 10 00 00 00 13 0b 00 00 13 0b 00 00 00 00 00 00 00 00 00 00 "
     "ff 00 00 ff ff ff 00 00 00 00 ff 00 ff 00 00 00",
     "The picture is drawn with its top left corner at the offsets. `_size` is shown in the log and not used: the "
     "picture is all that follows the head, and bytes that its own header promises and that are not there read as "
     "zero. A picture that sticks out of the screen is not clipped: the window ends at the screen's edge, and all "
     "pixels are sent into it."},
    {21, "status LED 3 on", "00 00 00 0c 00 00 00 15 00 00 00 03 00 00 00 01",
     "One LED command. Ids are not checked: the bits of an id above 31 run into the bits that tell the kinds of LEDs "
     "apart."},
    {22, "toggle indicator 1 on", "00 00 00 0c 00 00 00 16 00 00 00 01 00 00 00 01",
     "Both indicators are written, the other one as it was. Any other indicator or state is dropped without a word."},
};

namespace worked_example_detail {

// The rows themselves are walked: with UndefinedBehaviorSanitizer, GCC 12 calls the check of a pointer to one of them
// for null no constant expression.
constexpr bool has_a_row(const WorkedExample &example) {
  for (const MessageType &type : catalogue)
    if (type.opcode == example.opcode)
      return is_consistent(example, type);
  return false;
}

constexpr bool examples_fit_the_catalogue() {
  for (std::size_t i = 0; i < std::size(worked_examples); ++i) {
    if (!has_a_row(worked_examples[i]))
      return false;
    if (i > 0 && worked_examples[i].opcode <= worked_examples[i - 1].opcode)
      return false;
  }
  return true;
}

static_assert(examples_fit_the_catalogue(), "at most one example for a message, in opcode order");

} // namespace worked_example_detail

/// The example for `opcode`, null when there is none.
constexpr const WorkedExample *find_worked_example(std::uint32_t opcode) {
  for (const WorkedExample &example : worked_examples)
    if (example.opcode == opcode)
      return &example;
  return nullptr;
}

} // namespace buttondriver::documents
