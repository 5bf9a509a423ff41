// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/documents/completion_words.h"

#include "buttonctl/messages/by_name/message_fields.h"
#include "dimensions/panel_dimensions.h"

namespace buttondriver::buttonctl {

namespace {

/// What a font of 8x16, the usual one, has room for. With others there are more or fewer, up to 128 can be sent.
constexpr int usual_lines = dimensions::screen_height / 16;

Completion one_of(QStringList words) { return {Completion::Kind::words, std::move(words)}; }

QStringList numbers_below(int count) {
  QStringList words;
  for (int i = 0; i < count; ++i)
    words += QString::number(i);
  return words;
}

Completion number_or_all(int count) { return one_of(numbers_below(count) + QStringList(QStringLiteral("all"))); }

QStringList message_names() {
  QStringList names;
  for (const MessageType &type : catalogue)
    names += QLatin1String(type.name);
  return names;
}

Completion completion_of(const QString &argument, const QString &command) {
  if (argument == QLatin1String("SCREEN"))
    return number_or_all(dimensions::screen_count);
  if (argument == QLatin1String("LINE"))
    return one_of(numbers_below(usual_lines));
  if (argument == QLatin1String("BUTTON"))
    return number_or_all(dimensions::button_count);
  if (argument == QLatin1String("ID"))
    return number_or_all(command == QLatin1String("toggle") ? dimensions::toggle_indicator_count
                                                            : dimensions::led_count);
  if (argument == QLatin1String("NAME"))
    return one_of(message_names());
  if (argument == QLatin1String("FILE") || argument == QLatin1String("DIR|FILE"))
    return {Completion::Kind::file};
  if (argument.contains(QLatin1Char('|')))
    return one_of(argument.split(QLatin1Char('|')));
  return {};
}

} // namespace

std::vector<CompletedArgument> arguments_of(const Command &command) {
  std::vector<CompletedArgument> arguments;
  for (QString argument : QString::fromLatin1(command.arguments).split(QLatin1Char(' '))) {
    if (argument.isEmpty() || argument.startsWith(QLatin1String("--")))
      break;
    argument.remove(QLatin1Char('[')).remove(QLatin1Char(']'));
    const bool repeats = argument.endsWith(QLatin1String("..."));
    argument.remove(QLatin1String("..."));
    arguments.push_back({argument, completion_of(argument, QLatin1String(command.name)), repeats});
  }
  return arguments;
}

Completion value_of(const CommandOption &option) {
  const QLatin1String value(option.value);
  const QString name = names_of(option).last();
  // A program that is found without its folder is taken without the option.
  if (value == QLatin1String("FILE") || value == QLatin1String("PROGRAM") || value == QLatin1String("COMMAND"))
    return {Completion::Kind::file};
  if (value == QLatin1String("DIR"))
    return {Completion::Kind::folder};
  if (value.startsWith(QLatin1String("HOST")))
    return {Completion::Kind::host};
  if (name == QLatin1String("--user"))
    return {Completion::Kind::user};
  if (name == QLatin1String("--screen"))
    return one_of(numbers_below(dimensions::screen_count));
  if (value == QLatin1String("WHICH"))
    return one_of({QStringLiteral("auto"), QStringLiteral("none"), QStringLiteral("256"), QStringLiteral("24bit")});
  return {};
}

QStringList names_of(const CommandOption &option) {
  QStringList names;
  for (const QString &name : QString::fromLatin1(option.names).split(QLatin1Char(',')))
    names += dashed(name);
  return names;
}

QStringList names_of(const std::vector<CommandOption> &options) {
  QStringList names;
  for (const CommandOption &option : options)
    names += names_of(option);
  return names;
}

} // namespace buttondriver::buttonctl
