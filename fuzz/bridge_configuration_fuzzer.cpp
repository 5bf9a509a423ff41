// SPDX-License-Identifier: Apache-2.0
// Configuration files of the bridge, as buttondriver-mqtt reads them: the whole input is the file. The files that it
// names are looked for in a folder that has none but "secret" and "pipe".
#include "bridge/configuration/configuration_file.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "tests/support/temporary_folder.h"

#include <QByteArray>
#include <QString>

#include <sys/stat.h>

namespace buttondriver::fuzz {

namespace {

using bridge::Configuration;

class Rig {
public:
  Rig() {
    ::chmod(_folder.write("secret", "secret\n").c_str(), S_IRUSR);
    ::mkfifo(_folder.path("pipe").c_str(), S_IRUSR | S_IWUSR);
  }

  QString file() const { return QString::fromStdString(_folder.path("a.ini")); }

private:
  test::TemporaryFolder _folder;
};

void require_ranges(const Configuration &read) {
  require(!read.name.isEmpty() && !read.name.contains('/'), "the bridge's name is one level of a topic");
  require(!read.prefix.isEmpty() && !read.prefix.contains('#') && !read.prefix.contains('+'), "topics are no filters");
  require(read.share >= 1 && read.share <= read.shares, "a share is one of those that there are");
  require(read.statistics_seconds >= 0, "time does not go backwards");
  require(!read.broker.host.isEmpty() && read.broker.port > 0, "the broker can be reached");
  require(read.broker.keep_alive_seconds >= 5, "the library takes the time of keep-alive");
  require(read.broker.cert_file.isEmpty() == read.broker.key_file.isEmpty(), "a certificate has its key");
}

void require_known_panels(const Configuration &read) {
  require(!read.panels.isEmpty(), "there is a panel");
  for (auto panel = read.panels.cbegin(); panel != read.panels.cend(); ++panel) {
    require(!panel.key().isEmpty() && !panel.key().contains('/') && panel.key() != "group" && panel.key() != "bridge",
            "a panel's name is one level of a topic, and its own");
    require(!panel->host.isEmpty() && panel->port > 0, "a panel can be reached");
    read.drives(panel.key());
  }
  for (const auto &group : read.groups)
    for (const QByteArray &panel : group)
      require(read.panels.contains(panel) && group.count(panel) == 1, "a group has panels, each once");
}

void require_told(const QString &problems, const QString &file) {
  const QStringList lines = problems.split(QLatin1Char('\n'));
  constexpr int most_lines = 51;
  require(lines.size() <= most_lines, "problems are bounded");
  int before = 0;
  for (const QString &line : lines) {
    require(line.startsWith(file + QLatin1Char(':')), "a problem names the file");
    const int number = line.mid(file.size() + 1).section(QLatin1Char(':'), 0, 0).toInt();
    require(number >= before || line == lines.last(), "problems are in the order of the lines");
    before = number;
  }
}

} // namespace

} // namespace buttondriver::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace buttondriver;
  using namespace buttondriver::fuzz;
  static const Rig rig;
  const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
  const auto read = bridge::read_configuration(text, rig.file());
  if (!read) {
    require_told(read.failure().text, rig.file());
    return 0;
  }
  require_ranges(*read);
  require_known_panels(*read);
  return 0;
}
