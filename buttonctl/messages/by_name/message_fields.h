// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/catalogue.h"

#include <QString>
#include <QStringList>

#include <vector>

/// The messages of the catalogue as a user gives them: fields by name, without those that follow from the others.
namespace buttondriver::buttonctl {

/// One thing of a message that a user can give a value to.
struct MessageField {
  enum class Input {
    number,  ///< any that the field can hold
    file,    ///< the name of a file with the field's bytes
    text,    ///< Latin-1, without its terminating NUL
    numbers, ///< 32-bit numbers, a comma between them
  };

  QString name;
  Input input;
  const Field *field; ///< null for what follows the fields and is counted by the last of them
  QString meaning;
};

/// Null when no message of the catalogue has this name.
const MessageType *find_message_type(const QString &name);

/// In the order of the message. The opcode and the count are left out.
std::vector<MessageField> message_fields(const MessageType &type);

/// Every message with its fields and their meanings, a line for each, all indented.
QString message_list();

} // namespace buttondriver::buttonctl
