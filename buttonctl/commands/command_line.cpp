// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/commands/command_line.h"

#include "buttonctl/arguments/closest_word.h"
#include "buttonctl/arguments/line_splitter.h"
#include "buttonctl/arguments/option_parser.h"
#include "buttonctl/commands/command_help.h"
#include "buttonctl/commands/endpoint_finder.h"
#include "buttonctl/commands/step_sender.h"
#include "buttonctl/session/console.h"
#include "buttonctl/session/exit_status.h"

#include <QCommandLineParser>

namespace buttondriver::buttonctl {

namespace {

QString help_of(const QString &command) { return QStringLiteral("buttonctl %1 --help").arg(command); }

Failure unknown_command(const CommandTable &commands, const QString &name) {
  QStringList names;
  for (const Command &command : commands)
    names += QLatin1String(command.name);
  const QString meant = closest_word(name, names);
  if (!meant.isEmpty())
    return Failure{QStringLiteral("unknown command '%1'; did you mean '%2'?").arg(name, meant)};
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
  if (arguments.isEmpty()) {
    return Action([&commands] {
      print_error(general_help(commands));
      return exit_bad_usage;
    });
  }
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
  EndpointFinder finder;
  if (const auto taken = finder.take(general); !taken)
    return taken.failure();

  QStringList words = general.positionalArguments();
  if (words.isEmpty())
    return Failure{QStringLiteral("no command given; see 'buttonctl --help'")};
  const QString name = words.takeFirst();
  const Command *command = find_command(commands, name);
  if (!command)
    return unknown_command(commands, name);

  QCommandLineParser specific;
  add_options(specific, general_options());
  add_options(specific, command->options);
  if (const auto parsed = parse_options(specific, words, help_of(name)); !parsed)
    return of_command(name, parsed.failure());
  if (specific.isSet(QStringLiteral("help")))
    return print_action(command_help(*command));
  if (const auto taken = finder.take(specific); !taken)
    return of_command(name, taken.failure());
  const Outcome<Endpoint> endpoint = finder.endpoint();
  if (!endpoint)
    return endpoint.failure();
  const bool dry_run = general.isSet(QStringLiteral("dry-run")) || specific.isSet(QStringLiteral("dry-run"));
  const CommandContext context{*endpoint, dry_run, commands, finder.panel()};

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
    return unknown_command(commands, name);
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
