// SPDX-License-Identifier: Apache-2.0
#include "bridge/app/options.h"

#include <QCommandLineParser>

namespace buttondriver::bridge {

namespace {

const QString default_file = QStringLiteral("/etc/buttondriver/mqtt.ini");

const QCommandLineOption
    config_option({QStringLiteral("c"), QStringLiteral("config")},
                  QStringLiteral("Read the configuration from FILE. Default: %1.").arg(default_file),
                  QStringLiteral("FILE"), default_file);
const QCommandLineOption check_option(QStringLiteral("check"),
                                      QStringLiteral("Tell what is wrong with the configuration, and end."));
const QCommandLineOption quiet_option(QStringLiteral("quiet"), QStringLiteral("Log only what has to be mended."));
const QCommandLineOption verbose_option(QStringLiteral("verbose"),
                                        QStringLiteral("Log also each message that was wrong."));
const QCommandLineOption help_option({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help."));
const QCommandLineOption version_option({QStringLiteral("V"), QStringLiteral("version")},
                                        QStringLiteral("Print the version."));

} // namespace

std::variant<Options, Answer> read_options(const QStringList &arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Has buttondriver panels follow what is published at an MQTT broker."));
  parser.addOptions({config_option, check_option, quiet_option, verbose_option, help_option, version_option});
  if (!parser.parse(arguments))
    return Answer{parser.errorText(), 2};
  if (parser.isSet(help_option))
    return Answer{parser.helpText(), 0};
  if (parser.isSet(version_option))
    return Answer{QStringLiteral("buttondriver-mqtt " BUTTONDRIVER_VERSION "\n"), 0};
  if (!parser.positionalArguments().isEmpty())
    return Answer{QStringLiteral("what is '%1'? There are options only").arg(parser.positionalArguments().constFirst()),
                  2};
  if (parser.value(config_option).isEmpty())
    return Answer{QStringLiteral("--config takes the name of a file"), 2};
  if (parser.isSet(quiet_option) && parser.isSet(verbose_option))
    return Answer{QStringLiteral("use only one of --quiet and --verbose"), 2};

  Options options;
  options.configuration_file = parser.value(config_option);
  options.only_checks = parser.isSet(check_option);
  if (parser.isSet(quiet_option))
    options.log_level = LogLevel::faults;
  if (parser.isSet(verbose_option))
    options.log_level = LogLevel::all;
  return options;
}

} // namespace buttondriver::bridge
