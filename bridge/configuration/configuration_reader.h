// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/configuration/configuration.h"
#include "bridge/configuration/ini_file.h"
#include "bridge/configuration/problems.h"

#include <QDir>
#include <QHash>
#include <QPair>

namespace buttondriver::bridge {

/// Takes the lines of a configuration file one by one, and tells at the end what they say together.
class ConfigurationReader {
public:
  /// `folder`: where relative names of files count from.
  ConfigurationReader(QDir folder, Problems &problems);

  void take(const IniSection &section);
  void take(const IniLine &line);
  /// Looks at what can only be seen in all lines together. No take() after this.
  Configuration finish();

  using Take = void (ConfigurationReader::*)(const IniLine &line);
  struct Key {
    const char *section;
    const char *key; ///< null: any
    Take take;
  };
  /// All that a file can have.
  static const std::array<Key, 19> &keys();

private:
  static Take takerOf(const IniLine &line);

  void takeName(const IniLine &line);
  void takePrefix(const IniLine &line);
  void takeShare(const IniLine &line);
  void takeStatistics(const IniLine &line);
  void takeMetricsPort(const IniLine &line);
  void takeDiscovery(const IniLine &line);
  void takeDiscoveryPrefix(const IniLine &line);

  void takeHost(const IniLine &line);
  void takePort(const IniLine &line);
  void takeProtocol(const IniLine &line);
  void takeUser(const IniLine &line);
  void takePasswordFile(const IniLine &line);
  void takeTls(const IniLine &line);
  void takeCaFile(const IniLine &line);
  void takeCertFile(const IniLine &line);
  void takeKeyFile(const IniLine &line);
  void takeKeepAlive(const IniLine &line);

  void takePanel(const IniLine &line);
  void takeAddress(const IniLine &line, const PanelAddress &address);
  void takeGroup(const IniLine &line);
  void finishGroup(const IniLine &line);

  /// `member` becomes the number, unless it is none of `least` to `most`.
  template <class Number> void takeNumber(const IniLine &line, int least, int most, Number &member);
  void takeSwitch(const IniLine &line, bool &member);
  QString takeFile(const IniLine &line, bool has_secret);
  /// The line of `key` in [broker], 0 if there is none.
  int lineOf(const char *key) const { return _broker_lines.value(key, 0); }
  void finishBroker();

  QDir _folder;
  Problems &_problems;
  Configuration _read;
  bool _has_discovery = false;
  QByteArray _discovery_prefix = "homeassistant";
  QHash<QByteArray, int> _broker_lines;
  QHash<QPair<QString, int>, QByteArray> _panel_of; ///< by host, in small letters, and port
  std::vector<IniLine> _groups;
};

} // namespace buttondriver::bridge
