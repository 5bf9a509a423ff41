// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/documents/commands_manual.h"

#include "buttonctl/commands/command_help.h"
#include "tools/manual/folding.h"
#include "tools/manual/marked_part.h"
#include "tools/manual/roff.h"

#include <QRegularExpression>
#include <QStringList>

namespace buttondriver::buttonctl {

namespace {

QString sentence(const QString &text) { return text.left(1).toUpper() + text.mid(1) + QLatin1Char('.'); }

std::string plain(const QString &text) { return manual::inline_text(text.toStdString()); }

/// `text` with options in bold and `words`, what stands for arguments, in italics.
std::string emphasised(const QString &text, const QStringList &words) {
  static const QRegularExpression candidate(QStringLiteral("(?<![A-Za-z-])(--[a-z][a-z-]*|[A-Z][A-Z_]*)(?![A-Za-z_])"));
  std::string roff;
  decltype(text.size()) done = 0;
  auto matches = candidate.globalMatch(text);
  while (matches.hasNext()) {
    const QRegularExpressionMatch match = matches.next();
    const bool is_option = match.captured(0).startsWith(QLatin1Char('-'));
    if (!is_option && !words.contains(match.captured(0)))
      continue;
    roff += plain(text.mid(done, match.capturedStart(0) - done));
    const std::string found = match.captured(0).toStdString();
    roff += is_option ? manual::bold(found) : manual::italic(found);
    done = match.capturedEnd(0);
  }
  return roff + plain(text.mid(done));
}

/// The words in capitals of "SCREEN LINE [--output DIR]".
QStringList words_in_capitals(const QString &arguments) {
  QStringList words;
  for (const QString &word : arguments.split(QRegularExpression(QStringLiteral("[^A-Z_]+"))))
    if (!word.isEmpty())
      words += word;
  return words;
}

/// "SCREEN on|off [--invert]" with what is typed as it stands in bold.
std::string signature(const QString &arguments) {
  std::string roff;
  for (const auto &part : arguments.split(QRegularExpression(QStringLiteral("(?=[][|. =])|(?<=[][|. =])")))) {
    const std::string text = part.toStdString();
    if (part.contains(QRegularExpression(QStringLiteral("^[A-Z_]+$"))))
      roff += manual::italic(text);
    else if (part.contains(QRegularExpression(QStringLiteral("^[-a-z0-9_]+$"))))
      roff += manual::bold(text);
    else
      roff += manual::literal(text);
  }
  return roff;
}

std::string spelled_as_roff(const CommandOption &option) {
  std::string roff;
  for (const QString &name : QString::fromLatin1(option.names).split(QLatin1Char(',')))
    roff += (roff.empty() ? "" : ", ") + manual::bold(dashed(name).toStdString());
  return option.value ? roff + ' ' + signature(QLatin1String(option.value)) : roff;
}

std::string call(const Command &command) {
  const QString arguments = QString::fromLatin1(command.arguments);
  std::string roff = manual::bold(std::string("buttonctl ") + command.name);
  if (!arguments.isEmpty())
    roff += ' ' + signature(arguments);
  for (const CommandOption &option : command.options) {
    QString spelling = dashed(QString::fromLatin1(option.names).section(QLatin1Char(','), 0, 0));
    // An option that must be given stands among the arguments.
    if (arguments.contains(spelling))
      continue;
    if (option.value)
      spelling += QLatin1Char(' ') + QLatin1String(option.value);
    roff += " [" + signature(spelling) + ']';
  }
  return roff;
}

/// Paragraphs, and lines that start with two blanks as they are.
std::string details(const QString &lines, const QStringList &words) {
  std::string roff;
  QString paragraph;
  std::string kept;
  const auto end_paragraph = [&] {
    if (!paragraph.isEmpty())
      roff += ".PP\n" + manual::filled(emphasised(paragraph, words));
    paragraph.clear();
    if (!kept.empty())
      roff += manual::example(kept);
    kept.clear();
  };
  for (const QString &line : lines.split(QLatin1Char('\n'))) {
    const bool is_kept = line.startsWith(QLatin1String("  "));
    if (line.isEmpty() || (is_kept ? !paragraph.isEmpty() : !kept.empty()))
      end_paragraph();
    if (is_kept)
      kept += manual::folded(line.mid(2).toStdString(), manual::example_width) + '\n';
    else if (!line.isEmpty())
      paragraph += line + QLatin1Char(' ');
  }
  end_paragraph();
  return roff;
}

} // namespace

std::string commands_manual(const CommandTable &commands) {
  std::string roff;
  for (const Command &command : commands) {
    const QStringList words = words_in_capitals(QLatin1String(command.arguments));
    roff += ".SS " + manual::literal(command.name) + '\n' + manual::filled(call(command)) + ".PP\n" +
            manual::filled(emphasised(sentence(QLatin1String(command.summary)), words)) +
            details(command.details, words);
    for (const CommandOption &option : command.options)
      roff +=
          manual::tagged(spelled_as_roff(option), manual::filled(emphasised(QString::fromUtf8(option.meaning), words)));
    roff += manual::example(manual::folded_commands(command.examples));
  }
  return roff;
}

Outcome<QString> with_commands_manual(const QString &page, const CommandTable &commands) {
  const auto updated = manual::with_part(page.toStdString(), "commands", commands_manual(commands));
  if (!updated)
    return Failure{QStringLiteral("the manual page lacks a mark of the commands")};
  return QString::fromStdString(*updated);
}

} // namespace buttondriver::buttonctl
