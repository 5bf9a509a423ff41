// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/ini_file.h"

#include <QHash>
#include <QPair>

#include <algorithm>

namespace buttondriver::bridge {

namespace {

bool is_control_character(char byte) { return static_cast<unsigned char>(byte) < ' ' && byte != '\t'; }

class IniReader {
public:
  explicit IniReader(Problems &problems) : _problems(problems) {}

  void take(int number, const QByteArray &text) {
    if (text.isEmpty() || text.startsWith('#') || text.startsWith(';'))
      return;
    if (std::any_of(text.begin(), text.end(), is_control_character))
      return _problems.add(number, QStringLiteral("a control character"));
    if (text.startsWith('['))
      return takeSection(number, text);
    takeLine(number, text);
  }

  IniFile file;

private:
  void takeSection(int number, const QByteArray &text) {
    _is_in_section = true;
    _section = text.endsWith(']') ? text.mid(1, text.size() - 2).trimmed() : QByteArray();
    if (_section.isEmpty())
      return _problems.add(number, QStringLiteral("a section is written [name]"));
    int &first = _sections[_section];
    if (first != 0)
      return tellTwice(number, QStringLiteral("section ") + quoted(_section), first);
    first = number;
    file.sections.push_back({number, _section});
  }

  void takeLine(int number, const QByteArray &text) {
    const auto equals = text.indexOf('=');
    const QByteArray key = text.left(std::max(equals, decltype(equals){0})).trimmed();
    const QByteArray value = text.mid(equals + 1).trimmed();
    if (equals < 0 || key.isEmpty())
      return _problems.add(number, QStringLiteral("neither \"key = value\" nor a section nor a comment"));
    if (!_is_in_section)
      return _problems.add(number, QStringLiteral("%1 stands before the first section").arg(quoted(key)));
    if (_section.isEmpty()) // told already
      return;
    if (int &first = _keys[qMakePair(_section, key)]; first == 0)
      first = number;
    else
      return tellTwice(number, quoted(key), first);
    if (value.isEmpty())
      return _problems.add(number, QStringLiteral("%1 has no value").arg(quoted(key)));
    file.lines.push_back({number, _section, key, value});
  }

  void tellTwice(int number, const QString &what, int first) {
    _problems.add(number, QStringLiteral("%1 for the second time, after line %2").arg(what, QString::number(first)));
  }

  Problems &_problems;
  bool _is_in_section = false;
  QByteArray _section;
  QHash<QByteArray, int> _sections; ///< the line in which each begins
  QHash<QPair<QByteArray, QByteArray>, int> _keys;
};

} // namespace

IniFile ini_file(const QByteArray &text, Problems &problems) {
  IniReader reader(problems);
  int number = 0;
  const QByteArray mark = "\xEF\xBB\xBF"; // that some editors put in front
  for (auto begin = text.startsWith(mark) ? mark.size() : 0; begin < text.size();) {
    auto end = text.indexOf('\n', begin);
    if (end < 0)
      end = text.size();
    reader.take(++number, text.mid(begin, end - begin).trimmed());
    begin = end + 1;
  }
  return reader.file;
}

QString quoted(const QByteArray &text) {
  constexpr int most_shown = 60;
  const QString beginning = QString::fromUtf8(text.left(4 * (most_shown + 1))); // one more than is shown, if there is
  QString shown = beginning.left(most_shown);
  for (QChar &character : shown)
    if (!character.isPrint())
      character = QLatin1Char('?');
  if (beginning.size() > most_shown)
    shown += QStringLiteral("...");
  return QLatin1Char('"') + shown + QLatin1Char('"');
}

} // namespace buttondriver::bridge
