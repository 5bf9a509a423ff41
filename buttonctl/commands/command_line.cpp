// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/command_line.h"

#include "buttonctl/arguments/line_splitter.h"
#include "buttonctl/arguments/option_parser.h"
#include "buttonctl/commands/command_help.h"
#include "buttonctl/commands/step_sender.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QCommandLineParser>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_port = 65535;
constexpr std::int32_t longest_timeout_ms = 600000;

/// Takes over what is given in front of the command, or among its arguments.
Outcome<Done> apply_general_options(const QCommandLineParser &parser, CommandContext &context) {
  if (parser.isSet(QStringLiteral("host"))) {
    context.endpoint.host = parser.value(QStringLiteral("host"));
    if (context.endpoint.host.isEmpty())
      return Failure{QStringLiteral("--host must not be empty")};
  }
  if (parser.isSet(QStringLiteral("port"))) {
    const auto port = parse_number(QStringLiteral("--port"), parser.value(QStringLiteral("port")), 1, highest_port);
    if (!port)
      return port.failure();
    context.endpoint.port = static_cast<std::uint16_t>(*port);
  }
  if (parser.isSet(QStringLiteral("timeout"))) {
    const auto timeout =
        parse_number(QStringLiteral("--timeout"), parser.value(QStringLiteral("timeout")), 1, longest_timeout_ms);
    if (!timeout)
      return timeout.failure();
    context.endpoint.timeout_ms = *timeout;
  }
  context.dry_run = context.dry_run || parser.isSet(QStringLiteral("dry-run"));
  return Done{};
}

QString help_of(const QString &command) { return QStringLiteral("buttonctl %1 --help").arg(command); }

Failure unknown_command(const QString &name) {
  return Failure{QStringLiteral("unknown command '%1'; see 'buttonctl --help'").arg(name)};
}

Failure of_command(const QString &name, const Failure &failure) {
  return Failure{name + QLatin1String(": ") + failure.text};
}

/// `result`, when `arguments` were good and were all taken.
template <class Result> Outcome<Result> checked(ArgumentReader &arguments, const Result &result) {
  arguments.expectEnd();
  if (arguments.hasFailed())
    return arguments.outcome().failure();
  return result;
}

Action build(const Command &command, ArgumentReader &arguments, const CommandContext &context) {
  if (const auto *build_action = std::get_if<ActionBuilder>(&command.work))
    return (*build_action)(arguments, context);
  const Steps steps = std::get<StepsBuilder>(command.work)(arguments);
  return [steps, context] { return send_steps(steps, context); };
}

Action print_action(const QString &text) {
  return [text] {
    print(text);
    return exit_done;
  };
}

} // namespace

Outcome<Action> parse_command_line(const CommandTable &commands, const QStringList &arguments) {
  CommandContext context{Endpoint(), false, commands};
  QCommandLineParser general;
  general.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
  add_options(general, general_options());
  add_options(general, {version_option()});
  if (const auto parsed = parse_options(general, arguments, QStringLiteral("buttonctl --help")); !parsed)
    return parsed.failure();
  if (general.isSet(QStringLiteral("help")))
    return print_action(general_help(commands));
  if (general.isSet(QStringLiteral("version")))
    return print_action(QStringLiteral("buttonctl (buttondriver) " BUTTONDRIVER_VERSION "\n"));
  if (const auto applied = apply_general_options(general, context); !applied)
    return applied.failure();

  QStringList words = general.positionalArguments();
  if (words.isEmpty())
    return Failure{QStringLiteral("no command given; see 'buttonctl --help'")};
  const QString name = words.takeFirst();
  const Command *command = find_command(commands, name);
  if (!command)
    return unknown_command(name);

  QCommandLineParser specific;
  add_options(specific, general_options());
  add_options(specific, command->options);
  if (const auto parsed = parse_options(specific, words, help_of(name)); !parsed)
    return of_command(name, parsed.failure());
  if (specific.isSet(QStringLiteral("help")))
    return print_action(command_help(*command));
  if (const auto applied = apply_general_options(specific, context); !applied)
    return of_command(name, applied.failure());

  ArgumentReader reader(name, specific);
  reader.allowStandardInput();
  const Action action = build(*command, reader, context);
  return checked(reader, action);
}

Outcome<Steps> parse_batch_line(const CommandTable &commands, const QByteArray &line, const QString &folder) {
  const Outcome<QStringList> split = split_line(QString::fromUtf8(line));
  if (!split)
    return split.failure();
  QStringList words = *split;
  if (words.isEmpty())
    return Steps{};
  const QString name = words.takeFirst();
  const Command *command = find_command(commands, name);
  if (!command)
    return unknown_command(name);
  if (!command->onlySends())
    return Failure{QStringLiteral("a batch cannot run '%1'%2")
                       .arg(name, QLatin1String(name == QLatin1String("batch") ? "; give its lines here" : ""))};

  QCommandLineParser specific;
  add_options(specific, command->options);
  if (const auto parsed = parse_options(specific, words, help_of(name)); !parsed)
    return of_command(name, parsed.failure());
  ArgumentReader reader(name, specific, folder);
  const Steps steps = std::get<StepsBuilder>(command->work)(reader);
  return checked(reader, steps);
}

} // namespace buttondriver::buttonctl
