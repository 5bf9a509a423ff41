// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/scenario/expectations/feed_tests.h"

#include "buttonctl/messages/by_name/message_builder.h"
#include "buttonctl/messages/by_name/message_fields.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace buttondriver::buttonctl {

namespace {

constexpr QLatin1String no_error("expect-no-error");
constexpr int number_width = 4;

/// What the daemon prints to standard output when something is wrong; it calls nothing of that a fault.
constexpr const char *printed_faults[] = {
    "Invalid screen ID ",
    "invalid image data",
    "buttondriver:failed to ",
    "buttondriver:invalid button id ",
    "buttondriver: button id ",
    "buttondriver:unknown type ",
    "buttondriver: the level file is too long",
    "buttondriver: no memory below ",
    "buttondriver: texts lost ",
    "TFT Intensity is out of range",
    "Error ",
    "Input parameter 'data' pointer is NULL.",
    "Invalid BMP Signature ",
    "DIB Header Size is invalid.",
    "Invalid number of colour planes!",
    "Only 24-bit depth ",
    "Could not allocate array ",
    "Bitmap data and associated pointer ",
    "Font file ",
    "stat('",
};

QString field_of(const QJsonObject &entry, const char *name) { return entry.value(QLatin1String(name)).toString(); }

FeedTest log_test(ArgumentReader &arguments) {
  const QString wanted = arguments.word("TEXT");
  return {PanelFeed::Kind::log, [=](const PanelFeed &feed) -> Outcome<Done> {
            for (const QJsonObject &entry : feed.entries)
              if (field_of(entry, "text").contains(wanted))
                return Done{};
            return Failure{QStringLiteral("no line of the daemon's log has '%1'").arg(wanted)};
          }};
}

FeedTest no_error_test(ArgumentReader &) {
  return {PanelFeed::Kind::log, [](const PanelFeed &feed) -> Outcome<Done> {
            for (const QJsonObject &entry : feed.entries)
              if (tells_a_fault(field_of(entry, "source"), field_of(entry, "text")))
                return Failure{QStringLiteral("the daemon's log has '%1'").arg(field_of(entry, "text").trimmed())};
            if (feed.dropped > 0)
              return Failure{QStringLiteral("the panel does not know the oldest %1 lines of the log any more; 'reset' "
                                            "forgets what was before")
                                 .arg(feed.dropped)};
            return Done{};
          }};
}

struct WantedField {
  QString name;
  QString value;
  std::optional<std::uint32_t> number; ///< nothing for a text
};

std::optional<WantedField> wanted_field(const MessageType &type, const QString &word, ArgumentReader &arguments) {
  const QString name = word.section(QLatin1Char('='), 0, 0);
  WantedField wanted{name, word.mid(name.size() + 1), std::nullopt};
  const std::vector<MessageField> fields = message_fields(type);
  const auto field = std::find_if(fields.begin(), fields.end(), [&](const auto &other) { return other.name == name; });
  if (!word.contains(QLatin1Char('=')))
    arguments.fail(QStringLiteral("'%1' is not FIELD=VALUE").arg(word));
  else if (field == fields.end())
    arguments.fail(QStringLiteral("%1 has no field '%2'").arg(QLatin1String(type.name), name));
  else if (field->input == MessageField::Input::text)
    return wanted;
  else if (field->input != MessageField::Input::number)
    arguments.fail(QStringLiteral("'%1' cannot be compared: the panel tells only how many bytes it has").arg(name));
  else if (const auto number = parse_field_number(name, wanted.value, field->field->width); !number)
    arguments.fail(number.failure().text);
  else
    wanted.number = *number;
  return wanted;
}

/// A field of a message as the panel has it: a number, or a colour as "0xRRGGBB".
std::optional<std::uint32_t> number_in(const QJsonValue &value) {
  if (value.isDouble())
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(value.toDouble()));
  const auto number = parse_field_number(QString(), value.toString(), number_width);
  return number ? std::optional<std::uint32_t>(*number) : std::nullopt;
}

bool has_field(const QJsonObject &message, const WantedField &wanted) {
  if (!wanted.number)
    return message.value(QLatin1String("text")).isString() && field_of(message, "text") == wanted.value;
  for (const QJsonValue field : message.value(QLatin1String("fields")).toArray())
    if (field.toArray().at(0).toString() == wanted.name)
      return number_in(field.toArray().at(1)) == wanted.number;
  return false;
}

/// "button_id=5 state=1 time=0"
QString shown_fields(const QJsonObject &message) {
  QStringList shown;
  for (const QJsonValue field : message.value(QLatin1String("fields")).toArray())
    if (const QString name = field.toArray().at(0).toString(); name != QLatin1String("opcode"))
      shown += name + QLatin1Char('=') + field.toArray().at(1).toVariant().toString();
  if (message.value(QLatin1String("text")).isString())
    shown += QStringLiteral("text='%1'").arg(field_of(message, "text"));
  return shown.join(QLatin1Char(' '));
}

FeedTest message_test(ArgumentReader &arguments) {
  const QString name = arguments.word("NAME");
  const MessageType *type = find_message_type(name);
  if (!type && !arguments.hasFailed())
    arguments.fail(QStringLiteral("there is no message '%1'; see 'buttonctl message --help'").arg(name));
  std::vector<WantedField> wanted;
  while (!arguments.atEnd() && !arguments.hasFailed())
    if (const auto field = wanted_field(*type, arguments.word("FIELD=VALUE"), arguments))
      wanted.push_back(*field);
  return {
      PanelFeed::Kind::messages, [=](const PanelFeed &feed) -> Outcome<Done> {
        if (!feed.is_known)
          return Failure{QStringLiteral("messages are not known, because another program drives the panel")};
        QJsonObject last;
        for (const QJsonObject &message : feed.entries) {
          if (field_of(message, "name") != name)
            continue;
          last = message;
          if (std::all_of(wanted.begin(), wanted.end(), [&](const auto &field) { return has_field(message, field); }))
            return Done{};
        }
        if (last.isEmpty())
          return Failure{QStringLiteral("no %1 has come").arg(name)};
        return Failure{QStringLiteral("no %1 like this has come; the last one had %2").arg(name, shown_fields(last))};
      }};
}

struct NamedFeedTest {
  QLatin1String name;
  FeedTest (*build)(ArgumentReader &arguments);
};

constexpr NamedFeedTest feed_tests[] = {
    {QLatin1String("expect-log"), log_test},
    {no_error, no_error_test},
    {QLatin1String("expect-message"), message_test},
};

} // namespace

std::optional<FeedTest> feed_test(const QString &name, ArgumentReader &arguments) {
  for (const NamedFeedTest &test : feed_tests)
    if (name == test.name)
      return test.build(arguments);
  return std::nullopt;
}

bool is_about_faults(const QString &name) { return name == no_error; }

bool tells_a_fault(const QString &source, const QString &text) {
  if (source == QLatin1String("fault"))
    return true;
  const QString line = text.trimmed();
  return source == QLatin1String("output") &&
         std::any_of(std::begin(printed_faults), std::end(printed_faults),
                     [&](const char *beginning) { return line.startsWith(QLatin1String(beginning)); });
}

} // namespace buttondriver::buttonctl
