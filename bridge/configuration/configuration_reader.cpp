// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/configuration_reader.h"

#include "bridge/configuration/values.h"

#include <QSet>

#include <array>
#include <utility>

namespace buttondriver::bridge {

namespace {

constexpr int most_port = 65535;
constexpr int default_tls_port = 8883;

const QString name_rule = QStringLiteral("a name has 1 to 64 letters, digits, \"_\", \".\" and \"-\"");

bool is_section(const QByteArray &name) {
  return name == "bridge" || name == "broker" || name == "panels" || name == "groups";
}

} // namespace

ConfigurationReader::ConfigurationReader(QDir folder, Problems &problems)
    : _folder(std::move(folder)), _problems(problems) {}

const std::array<ConfigurationReader::Key, 19> &ConfigurationReader::keys() {
  using Reader = ConfigurationReader;
  static const std::array<Key, 19> all = {{
      {"bridge", "name", &Reader::takeName},
      {"bridge", "prefix", &Reader::takePrefix},
      {"bridge", "share", &Reader::takeShare},
      {"bridge", "statistics", &Reader::takeStatistics},
      {"bridge", "metrics_port", &Reader::takeMetricsPort},
      {"bridge", "discovery", &Reader::takeDiscovery},
      {"bridge", "discovery_prefix", &Reader::takeDiscoveryPrefix},
      {"broker", "host", &Reader::takeHost},
      {"broker", "port", &Reader::takePort},
      {"broker", "protocol", &Reader::takeProtocol},
      {"broker", "user", &Reader::takeUser},
      {"broker", "password_file", &Reader::takePasswordFile},
      {"broker", "tls", &Reader::takeTls},
      {"broker", "ca_file", &Reader::takeCaFile},
      {"broker", "cert_file", &Reader::takeCertFile},
      {"broker", "key_file", &Reader::takeKeyFile},
      {"broker", "keep_alive", &Reader::takeKeepAlive},
      {"panels", nullptr, &Reader::takePanel},
      {"groups", nullptr, &Reader::takeGroup},
  }};
  return all;
}

ConfigurationReader::Take ConfigurationReader::takerOf(const IniLine &line) {
  for (const Key &key : keys())
    if (line.section == key.section && (!key.key || line.key == key.key))
      return key.take;
  return nullptr;
}

void ConfigurationReader::take(const IniSection &section) {
  if (!is_section(section.name))
    _problems.add(section.line, QStringLiteral("there is no section %1").arg(quoted(section.name)));
}

void ConfigurationReader::take(const IniLine &line) {
  if (!is_section(line.section)) // told already
    return;
  if (line.section == "broker")
    _broker_lines.insert(line.key, line.line);
  if (const Take taker = takerOf(line))
    return (this->*taker)(line);
  _problems.add(line.line,
                QStringLiteral("there is no key %1 in [%2]").arg(quoted(line.key), QString::fromUtf8(line.section)));
}

template <class Number> void ConfigurationReader::takeNumber(const IniLine &line, int least, int most, Number &member) {
  if (const std::optional<int> number = number_of(line.value, least, most))
    member = static_cast<Number>(*number);
  else
    _problems.add(line.line, QStringLiteral("%1 is a number of %2 to %3, not %4")
                                 .arg(QString::fromUtf8(line.key))
                                 .arg(least)
                                 .arg(most)
                                 .arg(quoted(line.value)));
}

void ConfigurationReader::takeSwitch(const IniLine &line, bool &member) {
  member = line.value == "on";
  if (!member && line.value != "off")
    _problems.add(line.line,
                  QStringLiteral("%1 is on or off, not %2").arg(QString::fromUtf8(line.key), quoted(line.value)));
}

void ConfigurationReader::takeName(const IniLine &line) {
  if (!is_name(line.value))
    _problems.add(line.line, QStringLiteral("%1: ").arg(quoted(line.value)) + name_rule);
  _read.name = line.value;
}

void ConfigurationReader::takePrefix(const IniLine &line) {
  if (!is_topic_prefix(line.value))
    _problems.add(line.line, QStringLiteral("%1 cannot stand at the beginning of a topic").arg(quoted(line.value)));
  _read.prefix = line.value;
}

void ConfigurationReader::takeShare(const IniLine &line) {
  constexpr int most_shares = 1000;
  const auto slash = line.value.indexOf('/');
  const std::optional<int> shares = number_of(line.value.mid(slash + 1), 1, most_shares);
  const std::optional<int> share = number_of(line.value.left(slash), 1, shares.value_or(1));
  if (!shares || !share) // where there is no slash, nothing is left of it
    return _problems.add(line.line,
                         QStringLiteral("share is written 1/3, up to 1000/1000, not %1").arg(quoted(line.value)));
  _read.share = *share;
  _read.shares = *shares;
}

void ConfigurationReader::takeStatistics(const IniLine &line) {
  constexpr int a_day = 86400;
  takeNumber(line, 0, a_day, _read.statistics_seconds);
}

void ConfigurationReader::takeMetricsPort(const IniLine &line) { takeNumber(line, 0, most_port, _read.metrics_port); }

void ConfigurationReader::takeDiscovery(const IniLine &line) { takeSwitch(line, _has_discovery); }

void ConfigurationReader::takeDiscoveryPrefix(const IniLine &line) {
  if (!is_topic_prefix(line.value))
    _problems.add(line.line, QStringLiteral("%1 cannot stand at the beginning of a topic").arg(quoted(line.value)));
  _discovery_prefix = line.value;
}

void ConfigurationReader::takeHost(const IniLine &line) {
  if (!is_host(line.value))
    _problems.add(line.line, QStringLiteral("%1 is not the name or address of a host").arg(quoted(line.value)));
  _read.broker.host = QString::fromUtf8(line.value);
}

void ConfigurationReader::takePort(const IniLine &line) { takeNumber(line, 1, most_port, _read.broker.port); }

void ConfigurationReader::takeProtocol(const IniLine &line) {
  _read.broker.is_mqtt_5 = line.value == "5";
  if (!_read.broker.is_mqtt_5 && line.value != "3.1.1")
    _problems.add(line.line, QStringLiteral("protocol is 5 or 3.1.1, not %1").arg(quoted(line.value)));
}

void ConfigurationReader::takeUser(const IniLine &line) {
  _read.broker.user = QString::fromUtf8(line.value);
  if (_read.broker.user.toUtf8() != line.value)
    _problems.add(line.line, QStringLiteral("user is not written in UTF-8"));
}

void ConfigurationReader::takePasswordFile(const IniLine &line) {
  const auto password = read_password(_folder.absoluteFilePath(QString::fromUtf8(line.value)));
  if (!password)
    return _problems.add(line.line, password.failure().text);
  _read.broker.password = *password;
}

void ConfigurationReader::takeTls(const IniLine &line) { takeSwitch(line, _read.broker.has_tls); }

QString ConfigurationReader::takeFile(const IniLine &line, bool has_secret) {
  const QString file = _folder.absoluteFilePath(QString::fromUtf8(line.value));
  if (const auto outcome = check_file(file, has_secret); !outcome)
    _problems.add(line.line, outcome.failure().text);
  return file;
}

void ConfigurationReader::takeCaFile(const IniLine &line) { _read.broker.ca_file = takeFile(line, false); }
void ConfigurationReader::takeCertFile(const IniLine &line) { _read.broker.cert_file = takeFile(line, false); }
void ConfigurationReader::takeKeyFile(const IniLine &line) { _read.broker.key_file = takeFile(line, true); }

void ConfigurationReader::takeKeepAlive(const IniLine &line) {
  constexpr int least = 5; // the library's
  constexpr int most = 65535;
  takeNumber(line, least, most, _read.broker.keep_alive_seconds);
}

void ConfigurationReader::takePanel(const IniLine &line) {
  if (!is_name(line.key))
    _problems.add(line.line, QStringLiteral("%1: ").arg(quoted(line.key)) + name_rule);
  else if (line.key == "group" || line.key == "bridge")
    _problems.add(line.line, QStringLiteral("no panel can have the name %1, which topics need").arg(quoted(line.key)));
  const auto address = address_of(line.value);
  if (!address)
    _problems.add(line.line, address.failure().text + QStringLiteral(", not ") + quoted(line.value));
  else
    takeAddress(line, *address);
  _read.panels.insert(line.key, address ? *address : PanelAddress());
}

void ConfigurationReader::takeAddress(const IniLine &line, const PanelAddress &address) {
  // Two lines for one panel would send it two different pictures of what it should show.
  QByteArray &panel = _panel_of[{address.host.toLower(), address.port}];
  if (panel.isEmpty())
    panel = line.key;
  else
    _problems.add(line.line,
                  QStringLiteral("%1 is the address of panel %2 already").arg(quoted(line.value), quoted(panel)));
}

void ConfigurationReader::takeGroup(const IniLine &line) {
  if (!is_name(line.key))
    _problems.add(line.line, QStringLiteral("%1: ").arg(quoted(line.key)) + name_rule);
  _groups.push_back(line);
}

void ConfigurationReader::finishGroup(const IniLine &line) {
  QVector<QByteArray> &panels = _read.groups[line.key];
  QSet<QByteArray> seen;
  const QList<QByteArray> items = line.value.split(',');
  for (const QByteArray &item : items) {
    const QByteArray panel = item.trimmed();
    if (seen.contains(panel))
      _problems.add(line.line, QStringLiteral("panel %1 for the second time").arg(quoted(panel)));
    else if (!_read.panels.contains(panel))
      _problems.add(line.line, QStringLiteral("there is no panel %1").arg(quoted(panel)));
    seen += panel;
    panels += panel;
  }
}

void ConfigurationReader::finishBroker() {
  if (_read.broker.has_tls) {
    if (lineOf("port") == 0)
      _read.broker.port = default_tls_port;
  } else {
    for (const char *key : {"ca_file", "cert_file", "key_file"})
      if (lineOf(key) > 0)
        _problems.add(lineOf(key), QStringLiteral("%1 is of no use without tls = on").arg(QString::fromLatin1(key)));
  }
  const std::array<std::pair<const char *, const char *>, 3> pairs = {
      {{"cert_file", "key_file"}, {"key_file", "cert_file"}, {"password_file", "user"}}};
  for (const auto &[key, other] : pairs)
    if (lineOf(key) > 0 && lineOf(other) == 0)
      _problems.add(
          lineOf(key),
          QStringLiteral("%1 is of no use without %2").arg(QString::fromLatin1(key), QString::fromLatin1(other)));
}

Configuration ConfigurationReader::finish() {
  finishBroker();
  for (const IniLine &line : _groups)
    finishGroup(line);
  // A file that somebody has emptied, or writes just now, must not end all. Where something else is wrong, that may be
  // why there is none.
  if (_read.panels.isEmpty() && _problems.areNone())
    _problems.add(0, QStringLiteral("no panel stands in [panels]"));
  if (_has_discovery)
    _read.discovery_prefix = _discovery_prefix;
  return std::move(_read);
}

} // namespace buttondriver::bridge
