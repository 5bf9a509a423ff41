// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/numbers.h"
#include "outcome/outcome.h"

#include <QByteArray>
#include <QCommandLineParser>
#include <QIODevice>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace buttondriver::buttonctl {

/// A file that an argument names.
struct NamedFile {
  QString name;       ///< as the argument has it
  QByteArray content; ///< empty when the file cannot be read
};

/// Takes the arguments of one command one after the other, each checked. The first thing that is wrong is kept as the
/// outcome; from then on every call returns a value of no meaning, so that a command looks at the outcome once.
class ArgumentReader {
public:
  /// Borrows `parser`, which has parsed the command's arguments already. Names of files are relative to `folder`, or to
  /// the current one when that is empty. `help` is the command whose help explains the arguments, `command` when empty.
  ArgumentReader(QString command, const QCommandLineParser &parser, QString folder = QString(),
                 QString help = QString());

  bool atEnd() const { return _next >= _arguments.size(); }
  /// The first thing that was wrong, if anything was.
  const Outcome<Done> &outcome() const { return _outcome; }
  bool hasFailed() const { return !_outcome; }

  /// Keeps the command's name and `text` as the failure, when there is none yet.
  void fail(const QString &text);
  /// Arguments that nobody has taken are a failure.
  void expectEnd();

  /// The next argument as it is.
  QString word(const char *name);
  std::int32_t number(const char *name, std::int32_t lowest, std::int32_t highest);
  /// The id of a screen, or `dimensions::all_screens` for the word "all".
  std::int32_t screen();
  /// `lowest` to `highest`, or -1 for the word "all".
  std::int32_t numberOrAll(const char *name, std::int32_t lowest, std::int32_t highest);
  /// The numbers of a list such as "0-5,9", in its order; nothing for the word "all".
  std::optional<std::vector<std::int32_t>> numbersOrAll(const char *name, std::int32_t lowest, std::int32_t highest);
  /// 1 for the word "on", 0 for the word "off".
  std::int32_t onOrOff();
  /// A text that survives the way to the panel, which is Latin-1.
  QString text();
  /// `text` itself, which must survive that way too; `name` is what a failure calls it.
  QString text(const QString &text, const QString &name);
  /// 0xRRGGBB, from six hexadecimal digits.
  std::uint32_t colour(const char *name);
  /// All arguments that are left, as hexadecimal digits, with blanks allowed between bytes.
  QByteArray hexadecimal();
  /// Where the file `name` lies.
  QString pathOf(const QString &name) const;
  /// From now on, file() takes "-" for standard input.
  void allowStandardInput() { _allows_standard_input = true; }
  /// The file that the next argument names.
  NamedFile file();
  /// The bytes of the file `name`.
  QByteArray contentOf(const QString &name);

  bool hasOption(const char *name) const { return _parser.isSet(QLatin1String(name)); }
  QString option(const char *name) const { return _parser.value(QLatin1String(name)); }
  /// `fallback` when the option is absent.
  std::int32_t optionNumber(const char *name, std::int32_t lowest, std::int32_t highest, std::int32_t fallback);
  /// 0xRRGGBB; `fallback` when the option is absent.
  std::uint32_t optionColour(const char *name, std::uint32_t fallback);
  /// A decimal number such as 2 or 0.5; `fallback` when the option is absent.
  double optionFactor(const char *name, double lowest, double highest, double fallback);
  /// True for `yes`, false for `no`, `fallback` when neither is there; both are a failure.
  bool optionPair(const char *yes, const char *no, bool fallback);

private:
  std::uint32_t colour(const QString &name, const QString &text);
  /// What is in `source`, which is open and is called `name`.
  QByteArray bounded(QIODevice &source, const QString &name);
  std::int32_t checked(const Outcome<std::int32_t> &outcome);

  const QString _command;
  const QCommandLineParser &_parser;
  const QString _folder;
  const QString _help;
  const QStringList _arguments;
  decltype(QStringList().size()) _next = 0;
  bool _allows_standard_input = false;
  Outcome<Done> _outcome{Done{}};
};

} // namespace buttondriver::buttonctl
