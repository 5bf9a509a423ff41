// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/json/catalogue_json.h"

#include "dimensions/panel_dimensions.h"
#include "protocol/field_text.h"
#include "protocol/framing.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace buttondriver::simulator {

namespace {

QString name_of(FieldKind kind) {
  switch (kind) {
  case FieldKind::unsigned_integer:
    return QStringLiteral("unsigned");
  case FieldKind::signed_integer:
    return QStringLiteral("signed");
  case FieldKind::bytes:
    break;
  }
  return QStringLiteral("bytes");
}

QString name_of(Counted counted) {
  switch (counted) {
  case Counted::text_bytes:
    return QStringLiteral("text");
  case Counted::image_bytes:
    return QStringLiteral("image");
  case Counted::image_ids:
    return QStringLiteral("ids");
  case Counted::nothing:
    break;
  }
  return QStringLiteral("nothing");
}

QString name_of(Handling handling) {
  switch (handling) {
  case Handling::server_ignores:
    return QStringLiteral("ignored");
  case Handling::server_sends:
    return QStringLiteral("answer");
  case Handling::server_handles:
    break;
  }
  return QStringLiteral("handled");
}

QJsonArray named_of(const Field &field) {
  QJsonArray values;
  for (std::size_t i = 0; i < field.namedCount(); ++i)
    values += QJsonObject{{QStringLiteral("first"), qint64{field.named[i].first}},
                          {QStringLiteral("last"), qint64{field.named[i].last}},
                          {QStringLiteral("name"), QLatin1String(field.named[i].name)}};
  return values;
}

QJsonObject to_json(const Field &field) {
  QJsonObject object{{QStringLiteral("name"), QLatin1String(field.name)},
                     {QStringLiteral("offset"), field.offset},
                     {QStringLiteral("width"), field.width},
                     {QStringLiteral("kind"), name_of(field.kind)},
                     {QStringLiteral("is_colour"), field.is_colour},
                     {QStringLiteral("meaning"), QString::fromStdString(field_text(field))}};
  if (field.kind != FieldKind::bytes) {
    object[QLatin1String("lowest")] = qint64{field.lowest};
    object[QLatin1String("highest")] = qint64{field.highest};
    object[QLatin1String("named")] = named_of(field);
  }
  return object;
}

QJsonArray fields_of(const MessageType &type) {
  QJsonArray fields;
  for (std::size_t i = 0; i < type.fieldCount(); ++i)
    fields += to_json(type.fields[i]);
  return fields;
}

QJsonArray messages() {
  QJsonArray types;
  for (const MessageType &type : catalogue)
    types += QJsonObject{{QStringLiteral("opcode"), qint64{type.opcode}},
                         {QStringLiteral("name"), QLatin1String(type.name)},
                         {QStringLiteral("meaning"), QLatin1String(type.meaning)},
                         {QStringLiteral("handling"), name_of(type.handling)},
                         {QStringLiteral("counted"), name_of(type.counted)},
                         {QStringLiteral("head_size"), qint64{type.head_size}},
                         {QStringLiteral("fields"), fields_of(type)}};
  return types;
}

QJsonObject panel() {
  return {{QStringLiteral("screen_count"), dimensions::screen_count},
          {QStringLiteral("all_screens"), dimensions::all_screens},
          {QStringLiteral("screen_width"), dimensions::screen_width},
          {QStringLiteral("screen_height"), dimensions::screen_height},
          {QStringLiteral("highest_intensity"), dimensions::highest_intensity_level},
          {QStringLiteral("button_count"), dimensions::button_count},
          {QStringLiteral("all_buttons"), dimensions::all_buttons},
          {QStringLiteral("led_count"), dimensions::led_count},
          {QStringLiteral("toggle_count"), dimensions::toggle_indicator_count},
          {QStringLiteral("button_image_width"), dimensions::button_image_width},
          {QStringLiteral("button_image_height"), dimensions::button_image_height},
          {QStringLiteral("button_image_bytes"), dimensions::button_image_bytes},
          {QStringLiteral("default_port"), DEFAULT_PORT}};
}

} // namespace

QByteArray catalogue_json() {
  const QJsonObject object{{QStringLiteral("panel"), panel()}, {QStringLiteral("messages"), messages()}};
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace buttondriver::simulator
