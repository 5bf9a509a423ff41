// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/arguments/option_parser.h"

namespace buttondriver::buttonctl {

void add_options(QCommandLineParser &parser, const std::vector<CommandOption> &options) {
  for (const CommandOption &option : options)
    parser.addOption(QCommandLineOption(QString::fromLatin1(option.names).split(QLatin1Char(',')), QString(),
                                        QLatin1String(option.value ? option.value : "")));
}

Outcome<Done> parse_options(QCommandLineParser &parser, const QStringList &arguments, const QString &help) {
  if (parser.parse(QStringList(QStringLiteral("buttonctl")) + arguments))
    return Done{};
  const QStringList unknown = parser.unknownOptionNames();
  if (!unknown.isEmpty()) {
    const QString &name = unknown.first();
    return Failure{QStringLiteral("unknown option '%1'; see '%2', and put -- before arguments that start with a dash")
                       .arg(dashed(name), help)};
  }
  QString text = parser.errorText();
  text[0] = text.at(0).toLower();
  if (text.endsWith(QLatin1Char('.')))
    text.chop(1);
  return Failure{text};
}

} // namespace buttondriver::buttonctl
