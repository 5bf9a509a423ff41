#include "tools/command_line.h"

#include "tools/argument_reader.h"
#include "tools/command_help.h"
#include "tools/commands.h"
#include "tools/line_splitter.h"

#include <QCommandLineParser>

#include <limits>

namespace buttondriver::buttonctl {

namespace {

constexpr std::int32_t highest_port = 65535;
constexpr std::int32_t longest_timeout_ms = 600000;

void add_options(QCommandLineParser &parser, const std::vector<CommandOption> &options) {
  for (const CommandOption &option : options)
    parser.addOption(QCommandLineOption(QString::fromLatin1(option.names).split(QLatin1Char(',')), QString(),
                                        QLatin1String(option.value ? option.value : "")));
}

/// Nothing, or what the parser itself has found. `help` is the command line that tells the options.
std::optional<Failure> parse(QCommandLineParser &parser, const QStringList &arguments, const QString &help) {
  if (parser.parse(QStringList(QStringLiteral("buttonctl")) + arguments))
    return std::nullopt;
  const QStringList unknown = parser.unknownOptionNames();
  if (!unknown.isEmpty()) {
    const QString &name = unknown.first();
    const QLatin1String dashes(name.size() == 1 ? "-" : "--");
    return Failure{QStringLiteral("unknown option '%1%2'; see '%3', and put -- before arguments that start with a dash")
                       .arg(dashes, name, help)};
  }
  QString text = parser.errorText();
  text[0] = text.at(0).toLower();
  if (text.endsWith(QLatin1Char('.')))
    text.chop(1);
  return Failure{text};
}

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

Outcome<Steps> build(const Command &command, const QCommandLineParser &parser) {
  ArgumentReader reader(QLatin1String(command.name), parser);
  Steps steps = command.build(reader);
  reader.expect_end();
  if (reader.failure())
    return *reader.failure();
  return steps;
}

Outcome<QString> batch_file(const Command &command, const QCommandLineParser &parser) {
  ArgumentReader reader(QLatin1String(command.name), parser);
  const QString file = reader.at_end() ? QString() : reader.word("FILE");
  reader.expect_end();
  if (reader.failure())
    return *reader.failure();
  return file == QLatin1String("-") ? QString() : file;
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
  if (const auto failure = parse(general, arguments, QStringLiteral("buttonctl --help")))
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
  if (const auto failure = parse(specific, words, help_of(name)))
    return Failure{name + QLatin1String(": ") + failure->text};
  if (specific.isSet(QStringLiteral("help")))
    return print_help(command_help(*command));
  if (const auto failure = apply_general_options(specific, request))
    return Failure{name + QLatin1String(": ") + failure->text};

  if (!command->build) {
    const Outcome<QString> file = batch_file(*command, specific);
    if (!file)
      return file.failure();
    request.kind = Request::Kind::batch;
    request.batch_file = *file;
    return request;
  }
  const Outcome<Steps> steps = build(*command, specific);
  if (!steps)
    return steps.failure();
  request.steps = *steps;
  return request;
}

Outcome<Steps> parse_batch_line(const QByteArray &line) {
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
    return Failure{QStringLiteral("a batch cannot run '%1'; give its lines here").arg(name)};

  QCommandLineParser specific;
  add_options(specific, command->options);
  if (const auto failure = parse(specific, words, help_of(name)))
    return Failure{name + QLatin1String(": ") + failure->text};
  return build(*command, specific);
}

} // namespace buttondriver::buttonctl
