// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/documents/bash_completion.h"

#include "buttonctl/commands/command_help.h"
#include "buttonctl/documents/bash_words.h"
#include "buttonctl/documents/completion_words.h"
#include "buttonctl/messages/by_name/message_fields.h"

#include <QStringList>

#include <map>

namespace buttondriver::buttonctl {

namespace {

const char *const introduction = R"bash(# shellcheck shell=bash
# SPDX-License-Identifier: Apache-2.0
# Completion of buttonctl in bash. Made from the rows of the commands, not written by hand:
#
#   cmake --build build/qt6 --target update_buttonctl_documents

)bash";

const char *const main_function = R"bash(# Puts into COMPREPLY those of the words $1 that start with $2.
_buttonctl_reply() {
  mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

# The same with the names of files, or with -d of folders.
_buttonctl_reply_files() {
  mapfile -t COMPREPLY < <(compgen "$1" -- "$2")
  compopt -o filenames 2>/dev/null
}

_buttonctl() {
  local command='' first='' option='' arguments_only='' beginning='' position=0 words word current value i
  COMPREPLY=()
  _buttonctl_join
  current=${words[-1]}
  for ((i = 1; i < ${#words[@]} - 1; ++i)); do
    word=${words[i]}
    if [[ $option ]]; then
      option=''
    elif [[ $word == '--' ]]; then
      arguments_only=yes
    elif [[ $word == -?* && ! $arguments_only ]]; then
      if _buttonctl_takes_value "$word"; then
        option=$word
      fi
    elif [[ ! $command ]]; then
      command=$word
    else
      first=${first:-$word}
      ((++position))
    fi
  done
  if [[ ! $option && $current == --*=* && ! $arguments_only ]]; then
    option=${current%%=*}
    beginning=$option=
  elif [[ ! $option && $command == message && $current == *=* ]]; then
    beginning=${current%%=*}=
  fi
  value=${current#"$beginning"}

  if [[ $option ]]; then
    _buttonctl_value "$option" "$value"
  elif [[ $beginning ]]; then
    if _buttonctl_takes_file "$first" "${beginning%=}"; then
      _buttonctl_reply_files -f "$value"
    fi
  elif [[ $current == -* && ! $arguments_only ]]; then
    _buttonctl_reply "$(_buttonctl_options "$command")" "$current"
  elif [[ ! $command ]]; then
    _buttonctl_reply "$_buttonctl_commands" "$current"
  elif [[ $command == message && $position -gt 0 ]]; then
    _buttonctl_reply "$(_buttonctl_fields "$first")" "$current"
    compopt -o nospace 2>/dev/null
  else
    word=$(_buttonctl_words "$command" "$position")
    if [[ $word == '<file>' ]]; then
      _buttonctl_reply_files -f "$current"
    else
      _buttonctl_reply "$word" "$current"
    fi
  fi
  _buttonctl_fit_replies "$current" "$beginning" "$2"
}

complete -F _buttonctl buttonctl
)bash";

constexpr QLatin1String file_words("<file>");

/// One case of a bash function.
QString case_of(const QString &pattern, const QString &does) {
  return QStringLiteral("    %1) %2 ;;\n").arg(pattern, does);
}

QString print_of(const QStringList &words) { return QStringLiteral("echo '%1'").arg(words.join(QLatin1Char(' '))); }

QString function(const char *comment, const char *name, const char *subject, const QString &cases,
                 const char *end = "") {
  return QStringLiteral("# %1\n%2() {\n  case %3 in\n%4  esac\n%5}\n\n")
      .arg(QLatin1String(comment), QLatin1String(name), QLatin1String(subject), cases, QLatin1String(end));
}

/// All options of the tool that take a value.
std::vector<CommandOption> valued_options(const CommandTable &commands) {
  std::vector<CommandOption> options;
  const auto add = [&options](const std::vector<CommandOption> &more) {
    for (const CommandOption &option : more)
      if (option.value)
        options.push_back(option);
  };
  add(general_options());
  for (const Command &command : commands)
    add(command.options);
  return options;
}

/// What a function does to complete $2 so; nothing when that is for the user to know.
QString completing(const Completion &completion) {
  switch (completion.kind) {
  case Completion::Kind::words:
    return QStringLiteral("_buttonctl_reply '%1' \"$2\"").arg(completion.words.join(QLatin1Char(' ')));
  case Completion::Kind::file:
    return QStringLiteral("_buttonctl_reply_files -f \"$2\"");
  case Completion::Kind::folder:
    return QStringLiteral("_buttonctl_reply_files -d \"$2\"");
  case Completion::Kind::host:
    return QStringLiteral("mapfile -t COMPREPLY < <(compgen -A hostname -- \"$2\")");
  case Completion::Kind::user:
    return QStringLiteral("mapfile -t COMPREPLY < <(compgen -A user -- \"$2\")");
  case Completion::Kind::unknown:
    break;
  }
  return {};
}

QString value_function(const CommandTable &commands) {
  std::map<QString, QStringList> names_by_action;
  for (const CommandOption &option : valued_options(commands))
    names_by_action[completing(value_of(option))] += names_of(option);
  QString cases;
  for (auto &[action, names] : names_by_action) {
    names.removeDuplicates();
    if (!action.isEmpty())
      cases += case_of(names.join(QLatin1String(" | ")), action);
  }
  return function("Completes $2, the value of the option $1.", "_buttonctl_value", "$1", cases);
}

QString takes_value_function(const CommandTable &commands) {
  QStringList names = names_of(valued_options(commands));
  names.removeDuplicates();
  return function("Whether the option $1 takes a value.", "_buttonctl_takes_value", "$1",
                  case_of(names.join(QLatin1String(" | ")), QStringLiteral("return 0")), "  return 1\n");
}

QString options_function(const CommandTable &commands) {
  const QStringList general = names_of(general_options());
  QString cases = case_of(QStringLiteral("''"), print_of(general + names_of(version_option())));
  for (const Command &command : commands)
    if (!command.options.empty())
      cases += case_of(QLatin1String(command.name), print_of(names_of(command.options) + general));
  cases += case_of(QStringLiteral("*"), print_of(general));
  return function("Prints the options of the command $1, or those before the command.", "_buttonctl_options", "$1",
                  cases);
}

QString words_function(const CommandTable &commands) {
  QString cases;
  for (const Command &command : commands) {
    int position = 0;
    for (const CompletedArgument &argument : arguments_of(command)) {
      const QString place = argument.repeats ? QStringLiteral("*") : QString::number(position);
      const QStringList words =
          argument.completion.kind == Completion::Kind::file ? QStringList(file_words) : argument.completion.words;
      if (!words.isEmpty())
        cases += case_of(QLatin1String(command.name) + QLatin1Char(':') + place, print_of(words));
      ++position;
    }
  }
  return function("Prints what the argument $2, counted from 0, of the command $1 can be.", "_buttonctl_words", "$1:$2",
                  cases);
}

QString fields_function() {
  QString cases;
  for (const MessageType &type : catalogue) {
    QStringList names;
    for (const MessageField &field : message_fields(type))
      names += field.name + QLatin1Char('=');
    if (!names.isEmpty())
      cases += case_of(QLatin1String(type.name), print_of(names));
  }
  return function("Prints the fields of the message $1.", "_buttonctl_fields", "$1", cases);
}

QString takes_file_function() {
  QStringList patterns;
  for (const MessageType &type : catalogue)
    for (const MessageField &field : message_fields(type))
      if (field.input == MessageField::Input::file)
        patterns += QLatin1String(type.name) + QLatin1Char(':') + field.name;
  return function("Whether the field $2 of the message $1 is given as the name of a file.", "_buttonctl_takes_file",
                  "$1:$2", case_of(patterns.join(QLatin1String(" | ")), QStringLiteral("return 0")), "  return 1\n");
}

} // namespace

QString bash_completion(const CommandTable &commands) {
  QStringList names;
  for (const Command &command : commands)
    names += QLatin1String(command.name);
  return QLatin1String(introduction) +
         QStringLiteral("_buttonctl_commands='%1'\n\n").arg(names.join(QLatin1Char(' '))) +
         takes_value_function(commands) + value_function(commands) + options_function(commands) +
         words_function(commands) + fields_function() + takes_file_function() + QLatin1String(bash_words_functions) +
         QLatin1String(main_function);
}

} // namespace buttondriver::buttonctl
