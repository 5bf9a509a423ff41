// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/commands/dice.h"

#include <string>

namespace buttondriver::test {

/// Random messages: mostly sensible, now and then at the edges of what a field can hold, and some of them broken.
std::string random_text_line(Dice &dice);
std::string random_sub_text_line(Dice &dice);
std::string random_picture(Dice &dice);
std::string random_blackout(Dice &dice);
std::string random_button_led(Dice &dice);
std::string random_status_indicator(Dice &dice);
std::string random_toggle_indicator(Dice &dice);
std::string random_image_upload(Dice &dice);
std::string random_unknown_message(Dice &dice);

/// `message` as it is, or cut short, or with more bytes after it.
std::string perhaps_of_another_length(Dice &dice, std::string message);

} // namespace buttondriver::test
