// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/commands/dice.h"
#include "protocol/catalogue.h"

#include <string>

namespace buttondriver::test {

/// A random message of a type: mostly sensible by the ranges of its fields, now and then at the edges of what a field
/// can hold, and with a text, picture or ids of some length.
std::string random_message(Dice &dice, const MessageType &type);
/// One of any type that the daemon handles, pictures apart, which take long.
std::string random_handled_message(Dice &dice);
/// An opcode, which the daemon knows or not, and numbers.
std::string random_unknown_message(Dice &dice);

/// `message` as it is, or cut short, or with more bytes after it.
std::string perhaps_of_another_length(Dice &dice, std::string message);

} // namespace buttondriver::test
