// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/commands/command.h"
#include "buttonctl/decode/decoded_message.h"
#include "buttonctl/decode/found_messages.h"

#include <QJsonObject>
#include <QString>

/// A message as text, as JSON, and as a line of a batch.
namespace buttondriver::buttonctl {

/// Its name, its fields, what their values stand for, and what follows them; one line without its end.
QString message_text(const DecodedMessage &message);

/// With its place.
QJsonObject message_json(const FoundMessage &found, const DecodedMessage &message);

/// {"line": 3} or {"offset": 12}
QJsonObject place_json(const FoundPlace &place);

/// What a batch, with `commands`, makes the very same bytes of: `message` with its fields where that can say it all,
/// `raw` otherwise, with the message's name behind it. Without its end.
QString batch_line(const DecodedMessage &message, const CommandTable &commands);

} // namespace buttondriver::buttonctl
