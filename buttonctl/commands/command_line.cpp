// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/command_line.h"

#include "buttonctl/arguments/argument_reader.h"
#include "buttonctl/arguments/line_splitter.h"
#include "buttonctl/arguments/option_parser.h"
#include "buttonctl/commands/command_help.h"
#include "buttonctl/commands/commands.h"

#include <QCommandLineParser>

#include <optional>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_port = 65535;
constexpr std::int32_t longest_timeout_ms = 600000;

/// Takes over what is given in front of the command, or among its arguments.
std::optional<Failure> apply_general_options(const QCommandLineParser &parser, Request &request) {
  if (parser.isSet(QStringLiteral("host"))) {
    request.endpoint.host = parser.value(QStringLiteral("host"));
    if (request.endpoint.host.isEmpty())
      return Failure{QStringLiteral("--host must not be empty")};
  }
  if (parser.isSet(QStringLiteral("port"))) {
    const auto port = parse_number(QStringLiteral("--port"), parser.value(QStringLiteral("port")), 1, highest_port);
    if (!port)
      return port.failure();
    request.endpoint.port = static_cast<std::uint16_t>(*port);
  }
  if (parser.isSet(QStringLiteral("timeout"))) {
    const auto timeout =
        parse_number(QStringLiteral("--timeout"), parser.value(QStringLiteral("timeout")), 1, longest_timeout_ms);
    if (!timeout)
      return timeout.failure();
    request.endpoint.timeout_ms = *timeout;
  }
  request.dry_run = request.dry_run || parser.isSet(QStringLiteral("dry-run"));
  return std::nullopt;
}

QString help_of(const QString &command) { return QStringLiteral("buttonctl %1 --help").arg(command); }

Failure unknown_command(const QString &name) {
  return Failure{QStringLiteral("unknown command '%1'; see 'buttonctl --help'").arg(name)};
}

Outcome<Steps> build(const Command &command, const QCommandLineParser &parser, const QString &folder = QString()) {
  ArgumentReader reader(QLatin1String(command.name), parser, folder);
  Steps steps = command.build(reader);
  reader.expect_end();
  if (reader.failure())
    return *reader.failure();
  return steps;
}

Outcome<Request> prepare(const Command &command, const QCommandLineParser &parser, Request request) {
  ArgumentReader reader(QLatin1String(command.name), parser);
  command.prepare(reader, request);
  reader.expect_end();
  if (reader.failure())
    return *reader.failure();
  return request;
}

Request print_help(const QString &text) {
  Request request;
  request.kind = Request::Kind::print_help;
  request.help = text;
  return request;
}

} // namespace

Outcome<Request> parse_command_line(const QStringList &arguments) {
  Request request;
  QCommandLineParser general;
  general.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
  add_options(general, general_options());
  add_options(general, {{"V,version", nullptr, nullptr}});
  if (const auto failure = parse_options(general, arguments, QStringLiteral("buttonctl --help")))
    return *failure;
  if (general.isSet(QStringLiteral("help")))
    return print_help(general_help());
  if (general.isSet(QStringLiteral("version"))) {
    request.kind = Request::Kind::print_version;
    return request;
  }
  if (const auto failure = apply_general_options(general, request))
    return *failure;

  QStringList words = general.positionalArguments();
  if (words.isEmpty())
    return Failure{QStringLiteral("no command given; see 'buttonctl --help'")};
  const QString name = words.takeFirst();
  const Command *command = find_command(name);
  if (!command)
    return unknown_command(name);

  QCommandLineParser specific;
  add_options(specific, general_options());
  add_options(specific, command->options);
  if (const auto failure = parse_options(specific, words, help_of(name)))
    return Failure{name + QLatin1String(": ") + failure->text};
  if (specific.isSet(QStringLiteral("help")))
    return print_help(command_help(*command));
  if (const auto failure = apply_general_options(specific, request))
    return Failure{name + QLatin1String(": ") + failure->text};

  if (!command->build)
    return prepare(*command, specific, request);
  const Outcome<Steps> steps = build(*command, specific);
  if (!steps)
    return steps.failure();
  request.steps = *steps;
  return request;
}

Outcome<Steps> parse_batch_line(const QByteArray &line, const QString &folder) {
  const Outcome<QStringList> split = split_line(QString::fromUtf8(line));
  if (!split)
    return split.failure();
  QStringList words = *split;
  if (words.isEmpty())
    return Steps{};
  const QString name = words.takeFirst();
  const Command *command = find_command(name);
  if (!command)
    return unknown_command(name);
  if (!command->build)
    return Failure{QStringLiteral("a batch cannot run '%1'%2")
                       .arg(name, QLatin1String(name == QLatin1String("batch") ? "; give its lines here" : ""))};

  QCommandLineParser specific;
  add_options(specific, command->options);
  if (const auto failure = parse_options(specific, words, help_of(name)))
    return Failure{name + QLatin1String(": ") + failure->text};
  return build(*command, specific, folder);
}

} // namespace buttondriver::buttonctl
