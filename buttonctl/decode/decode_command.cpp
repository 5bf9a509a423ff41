// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/decode/decode_command.h"

#include "buttonctl/decode/message_forms.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

namespace buttondriver::buttonctl {

namespace {

constexpr int decode_version = 1;
constexpr double microseconds_a_second = 1000000;

enum class DecodedForm { text, json, batch };

struct DecodePlan {
  QString source; ///< the name of a file, or "-"; empty when the digits were given
  QByteArray digits;
  DecodedForm form;
};

QString source_name(const DecodePlan &plan) {
  if (plan.source.isEmpty())
    return QStringLiteral("HEX");
  return plan.source == QLatin1String("-") ? QStringLiteral("standard input") : plan.source;
}

Outcome<FoundMessages> find_messages(const DecodePlan &plan) {
  if (plan.source.isEmpty())
    return messages_in_hexadecimal(plan.digits);
  QFile file(plan.source);
  const bool is_open =
      plan.source == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
  if (!is_open)
    return Failure{QStringLiteral("cannot read '%1': %2").arg(source_name(plan), file.errorString())};
  return messages_in_content(file.readAll());
}

QString place_of(const FoundMessage &found) {
  constexpr int places = 6;
  if (found.place.line == 0)
    return found.place.text();
  return QStringLiteral("%1 s, connection %2")
      .arg(static_cast<double>(found.time_us) / microseconds_a_second, 0, 'f', places)
      .arg(found.connection);
}

void print_json(const QJsonArray &messages, const FoundMessages &found) {
  QJsonArray faults;
  for (const FoundFault &fault : found.faults) {
    QJsonObject object = place_json(fault.place);
    object[QLatin1String("text")] = fault.text;
    faults += object;
  }
  const QJsonObject all{{QStringLiteral("version"), decode_version},
                        {QStringLiteral("messages"), messages},
                        {QStringLiteral("faults"), faults}};
  print_bytes(QJsonDocument(all).toJson());
}

int decode(const DecodePlan &plan, const CommandTable &commands) {
  const Outcome<FoundMessages> found = find_messages(plan);
  if (!found)
    return report(found.failure(), exit_bad_usage, QStringLiteral("decode: "));
  int status = exit_done;
  const auto tell = [&](const FoundPlace &place, const QString &text) {
    status = report(Failure{text}, exit_damaged,
                    source_name(plan) + QLatin1String(": ") + place.text() + QLatin1String(": "));
  };
  QJsonArray objects;
  for (const FoundMessage &message : found->messages) {
    const DecodedMessage decoded = decode_message(message.bytes);
    if (!decoded.fault.isEmpty())
      tell(message.place, (decoded.type ? QString::fromLatin1(decoded.type->name) : QStringLiteral("a message")) +
                              QLatin1Char(' ') + decoded.fault);
    if (plan.form == DecodedForm::json)
      objects += message_json(message, decoded);
    else if (plan.form == DecodedForm::batch)
      print(batch_line(decoded, commands) + QLatin1Char('\n'));
    else
      print(place_of(message) + QLatin1String(": ") + message_text(decoded) + QLatin1Char('\n'));
  }
  for (const FoundFault &fault : found->faults)
    tell(fault.place, fault.text);
  if (plan.form == DecodedForm::json)
    print_json(objects, *found);
  return status;
}

DecodePlan read_decode_plan(ArgumentReader &arguments) {
  DecodePlan plan{{}, {}, DecodedForm::text};
  if (arguments.hasOption("json"))
    plan.form = DecodedForm::json;
  if (arguments.hasOption("batch"))
    plan.form = DecodedForm::batch;
  if (arguments.hasOption("json") && arguments.hasOption("batch"))
    arguments.fail(QStringLiteral("use only one of --json and --batch"));
  const QString first = arguments.word("FILE");
  if (arguments.atEnd() && (QFileInfo::exists(first) || !is_all_hexadecimal(first.toUtf8()))) {
    plan.source = first;
    return plan;
  }
  plan.digits = first.toUtf8();
  while (!arguments.atEnd())
    plan.digits += arguments.word("HEX").toUtf8();
  if (!is_all_hexadecimal(plan.digits))
    arguments.fail(QStringLiteral("HEX must be hexadecimal digits; '%1' is not").arg(QString::fromUtf8(plan.digits)));
  return plan;
}

Action build_decode(ArgumentReader &arguments, const CommandContext &context) {
  refuse_dry_run(arguments, context);
  return [plan = read_decode_plan(arguments), &commands = context.commands] { return decode(plan, commands); };
}

} // namespace

Command decode_command() {
  return {"decode",
          "FILE [HEX]...",
          "tell what is in a recording or in captured bytes",
          QStringLiteral(
              "FILE is a recording, or the bytes that a client has sent, or the same in hexadecimal, as --dry-run\n"
              "prints them; - is standard input. Hexadecimal digits can also stand in place of FILE. Each message\n"
              "has its length before it. It is told with its name and its fields:\n"
              "\n"
              "  offset 0: BMS_TFTTextLine screen_id=1 line_id=0 flag=1 (white on black) n=6 text='Hello'\n"
              "\n"
              "What is cut off or unknown is told on standard error, with its offset or, in a recording, its\n"
              "line; the rest is decoded. Exit status: 0 all is decoded, 1 something was cut off or unknown, 2 FILE\n"
              "cannot be read. With --batch, each line makes the very same bytes; those that are no whole message\n"
              "with its length are left out.\n"),
          "buttonctl decode morning.rec\n"
          "buttonctl decode morning.rec --batch\n"
          "buttonctl decode 00000008 00000010 ffffffff\n"
          "buttonctl decode - --json\n",
          {{"json", nullptr, "print one JSON object, with the messages and what is broken"},
           {"batch", nullptr, "print lines for 'batch'"}},
          build_decode};
}

} // namespace buttondriver::buttonctl
