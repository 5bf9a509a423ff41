// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/by_name/message_command.h"

#include "buttonctl/messages/by_name/message_builder.h"
#include "buttonctl/messages/by_name/message_fields.h"
#include "buttonctl/messages/sending.h"

#include <QStringList>

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

Outcome<Done> set(MessageBuilder &builder, const MessageField &field, const QString &value, ArgumentReader &arguments) {
  switch (field.input) {
  case MessageField::Input::number:
    return builder.setNumber(*field.field, value);
  case MessageField::Input::file:
    if (field.field)
      return builder.setBytes(*field.field, arguments.contentOf(value));
    builder.setCountedBytes(arguments.contentOf(value));
    return Done{};
  case MessageField::Input::text:
    builder.setCountedText(arguments.text(value, field.name));
    return Done{};
  case MessageField::Input::numbers:
    break;
  }
  return builder.setCountedNumbers(field.name, value);
}

/// Takes one argument "FIELD=VALUE".
void take_field(ArgumentReader &arguments, const MessageType &type, QStringList &given, MessageBuilder &builder) {
  const QString argument = arguments.word("FIELD=VALUE");
  const auto equals = argument.indexOf(QLatin1Char('='));
  if (equals < 0) {
    arguments.fail(QStringLiteral("'%1' must be FIELD=VALUE").arg(argument));
    return;
  }
  const QString name = argument.left(equals);
  const std::vector<MessageField> fields = message_fields(type);
  const auto field = std::find_if(fields.begin(), fields.end(), [&name](const auto &row) { return row.name == name; });
  if (field == fields.end())
    arguments.fail(QStringLiteral("%1 has no field '%2' to be given; see 'buttonctl message --help'")
                       .arg(QLatin1String(type.name), name));
  else if (given.contains(name))
    arguments.fail(QStringLiteral("%1 is given twice").arg(name));
  else if (const auto done = set(builder, *field, argument.mid(equals + 1), arguments); !done)
    arguments.fail(done.failure().text);
  given += name;
}

Steps build_message(ArgumentReader &arguments) {
  const QString name = arguments.word("NAME");
  if (arguments.hasFailed())
    return {};
  const MessageType *type = find_message_type(name);
  if (!type) {
    arguments.fail(QStringLiteral("unknown message '%1'; see 'buttonctl message --help'").arg(name));
    return {};
  }
  MessageBuilder builder(*type);
  QStringList given;
  while (!arguments.atEnd() && !arguments.hasFailed())
    take_field(arguments, *type, given, builder);
  return send(builder.message());
}

} // namespace

Command message_command() {
  return {"message",
          "NAME [FIELD=VALUE]...",
          "send any message of the protocol, its fields by name",
          QStringLiteral(
              "A field that is not given is 0; what follows the fields is empty then. The opcode and the count of\n"
              "what follows are put in. Numbers are decimal, or hexadecimal after 0x; any number that the field\n"
              "can hold is sent, whether the daemon takes it or not. Answers are not waited for. These are the\n"
              "messages and their fields:\n"
              "\n") +
              message_list(),
          "buttonctl message BMS_SetLEDState button_id=5 state=-1 time=500\n"
          "buttonctl message BMS_TFTTextLine screen_id=1 line_id=0 flag=1 text='Channel 7'\n"
          "buttonctl message BMS_UploadImage image_id=30 size=120 image=arrow.raw\n"
          "buttonctl message BMS_SetButtonImageList button_id=0xFFFFFFFF image_ids=1,2,3\n",
          {},
          build_message};
}

} // namespace buttondriver::buttonctl
