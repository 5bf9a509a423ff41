// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/documents/zsh_completion.h"

#include "buttonctl/commands/command_help.h"
#include "buttonctl/documents/completion_words.h"
#include "buttonctl/messages/by_name/message_fields.h"

#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

const char *const first_lines = R"zsh(#compdef buttonctl
# SPDX-License-Identifier: Apache-2.0
# Completion of buttonctl in zsh. Made from the rows of the commands, not written by hand:
#
#   cmake --build build/qt6 --target update_buttonctl_documents

# Offers the words that follow the options of compadd, in their order: numbers count.
_buttonctl_words() {
  compadd -V words "$@"
}

)zsh";

const char *const field_function =
    R"zsh(# Offers the fields of the message that is the first argument, or after "FIELD=" files where the field takes one.
_buttonctl_field() {
  local message=$line[1]
  local -a fields
  if compset -P 1 '*='; then
    _buttonctl_takes_file $message ${IPREFIX%=} && _files
    return
  fi
  _buttonctl_fields $message
  _describe -t fields field fields -S =
}

)zsh";

const char *const main_begin = R"zsh(_buttonctl() {
  local curcontext=$curcontext state ret=1
  local -a general line state_descr
  local -A opt_args
  general=(
%1  )
  _arguments -C -s -S $general \
%2    '(-)1:command:_buttonctl_commands' '*:: :->arguments' && ret=0
  [[ $state == arguments ]] || return ret
  curcontext=${curcontext%:*:*}:buttonctl-$words[1]:
  case $words[1] in
)zsh";

const char *const main_end = R"zsh(  esac
  return ret
}

_buttonctl "$@"
)zsh";

/// `text` as a word of the shell.
QString quoted(QString text) {
  return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

/// `text` without a meaning of `characters`.
QString without_meaning(QString text, const char *characters) {
  text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
  for (const char *character = characters; *character != '\0'; ++character)
    text.replace(QLatin1Char(*character), QLatin1Char('\\') + QString(QLatin1Char(*character)));
  return text;
}

/// How _arguments says what completes `completion`. A blank: nothing does, only its name is shown.
QString action_of(const Completion &completion) {
  switch (completion.kind) {
  case Completion::Kind::words:
    return QLatin1String("_buttonctl_words ") + completion.words.join(QLatin1Char(' '));
  case Completion::Kind::file:
    return QStringLiteral("_files");
  case Completion::Kind::folder:
    return QStringLiteral("_files -/");
  case Completion::Kind::host:
    return QStringLiteral("_hosts");
  case Completion::Kind::user:
    return QStringLiteral("_users");
  case Completion::Kind::unknown:
    break;
  }
  return QStringLiteral(" ");
}

/// A specification of _arguments for each name of `option`; one of them rules out the others.
QStringList specifications(const CommandOption &option) {
  const QStringList names = names_of(option);
  const QString others = names.size() < 2 ? QString() : QStringLiteral("(%1)").arg(names.join(QLatin1Char(' ')));
  QStringList all;
  for (const QString &name : names) {
    QString text = others + name;
    if (option.value)
      text += QLatin1Char(name.startsWith(QLatin1String("--")) ? '=' : '+');
    text += QStringLiteral("[%1]").arg(without_meaning(QString::fromUtf8(option.meaning), "[]"));
    if (option.value)
      text +=
          QStringLiteral(":%1:%2").arg(without_meaning(QLatin1String(option.value), ":"), action_of(value_of(option)));
    all += quoted(text);
  }
  return all;
}

QStringList specifications(const Command &command) {
  QStringList all;
  for (const CommandOption &option : command.options)
    all += specifications(option);
  int position = 0;
  for (const CompletedArgument &argument : arguments_of(command)) {
    ++position;
    const QString place = argument.repeats ? QStringLiteral("*") : QString::number(position);
    const QString action = argument.name == QLatin1String("FIELD=VALUE") ? QStringLiteral("_buttonctl_field")
                                                                         : action_of(argument.completion);
    all += quoted(QStringLiteral("%1:%2:%3").arg(place, without_meaning(argument.name, ":"), action));
  }
  return all;
}

/// Each in a line of its own.
QString lines(const QStringList &words, const char *indentation, const char *end = "\n") {
  QString text;
  for (const QString &word : words)
    text += QLatin1String(indentation) + word + QLatin1String(end);
  return text;
}

QString commands_function(const CommandTable &commands) {
  QStringList described;
  for (const Command &command : commands)
    described += quoted(QLatin1String(command.name) + QLatin1Char(':') + QLatin1String(command.summary));
  return QStringLiteral("_buttonctl_commands() {\n  local -a commands\n  commands=(\n%1  )\n"
                        "  _describe -t commands command commands\n}\n\n")
      .arg(lines(described, "    "));
}

/// The functions that tell the fields of messages, and which of these are the names of files.
QString fields_functions() {
  QString cases;
  QStringList files;
  for (const MessageType &type : catalogue) {
    QStringList described;
    for (const MessageField &field : message_fields(type)) {
      described += quoted(field.name + QLatin1Char(':') + field.meaning);
      if (field.input == MessageField::Input::file)
        files += QLatin1String(type.name) + QLatin1Char(':') + field.name;
    }
    if (!described.isEmpty())
      cases += QStringLiteral("    %1) fields=(\n%2      ) ;;\n")
                   .arg(QLatin1String(type.name), lines(described, "        "));
  }
  return QStringLiteral("# Puts the fields of the message $1 into fields.\n"
                        "_buttonctl_fields() {\n  case $1 in\n%1  esac\n}\n\n"
                        "# Whether the field $2 of the message $1 is given as the name of a file.\n"
                        "_buttonctl_takes_file() {\n  [[ $1:$2 == (%2) ]]\n}\n\n")
      .arg(cases, files.join(QLatin1Char('|')));
}

} // namespace

QString zsh_completion(const CommandTable &commands) {
  QStringList general;
  for (const CommandOption &option : general_options())
    general += specifications(option);
  QString cases;
  for (const Command &command : commands)
    cases += QStringLiteral("    %1) _arguments -s -S $general%2 && ret=0 ;;\n")
                 .arg(QLatin1String(command.name), lines(specifications(command), " \\\n        ", ""));
  return QLatin1String(first_lines) + commands_function(commands) + fields_functions() + QLatin1String(field_function) +
         QString::fromLatin1(main_begin)
             .arg(lines(general, "    "), lines(specifications(version_option()), "    ", " \\\n")) +
         cases + QLatin1String(main_end);
}

} // namespace buttondriver::buttonctl
