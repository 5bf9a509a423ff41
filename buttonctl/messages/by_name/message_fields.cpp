// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/by_name/message_fields.h"

#include "protocol/field_text.h"

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

constexpr int name_column = 2;
constexpr int field_column = 6;

/// What the last field of `type` counts.
MessageField counted_part(const MessageType &type) {
  const QString count = QString::fromLatin1(type.countField().name);
  switch (type.counted) {
  case Counted::text_bytes:
    return {QStringLiteral("text"), MessageField::Input::text, nullptr,
            QStringLiteral("text in Latin-1; its NUL is added")};
  case Counted::image_bytes:
    return {QStringLiteral("image"), MessageField::Input::file, nullptr,
            QStringLiteral("name of a file, which is sent as it is")};
  case Counted::image_ids:
  case Counted::nothing:
    break;
  }
  return {QStringLiteral("image_ids"), MessageField::Input::numbers, nullptr,
          QStringLiteral("numbers, a comma between them")};
}

MessageField fixed_part(const Field &field) {
  const QString meaning = QString::fromStdString(field_text(field));
  if (field.kind == FieldKind::bytes)
    return {QLatin1String(field.name), MessageField::Input::file, &field,
            QStringLiteral("name of a file of %1 bytes: %2").arg(QString::number(field.width), meaning)};
  return {QLatin1String(field.name), MessageField::Input::number, &field, meaning};
}

QString list_line(int column, const QString &name, int width, const QString &meaning) {
  return QString(column, QLatin1Char(' ')) + name.leftJustified(width) + QLatin1String("  ") + meaning +
         QLatin1Char('\n');
}

} // namespace

const MessageType *find_message_type(const QString &name) {
  for (const MessageType &type : catalogue)
    if (name == QLatin1String(type.name))
      return &type;
  return nullptr;
}

std::vector<MessageField> message_fields(const MessageType &type) {
  const bool is_counting = type.counted != Counted::nothing;
  std::vector<MessageField> fields;
  for (std::size_t i = 1; i < type.fieldCount() - (is_counting ? 1 : 0); ++i)
    fields.push_back(fixed_part(type.fields[i]));
  if (is_counting)
    fields.push_back(counted_part(type));
  return fields;
}

QString message_list() {
  int meaning_column = 0;
  for (const MessageType &type : catalogue) {
    meaning_column = std::max(meaning_column, name_column + static_cast<int>(qstrlen(type.name)));
    for (const MessageField &field : message_fields(type))
      meaning_column = std::max(meaning_column, field_column + static_cast<int>(field.name.size()));
  }
  QString text;
  for (const MessageType &type : catalogue) {
    text +=
        list_line(name_column, QLatin1String(type.name), meaning_column - name_column, QString::fromUtf8(type.meaning));
    for (const MessageField &field : message_fields(type))
      text += list_line(field_column, field.name, meaning_column - field_column, field.meaning);
  }
  return text;
}

} // namespace buttondriver::buttonctl
