// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/command_table.h"
#include "buttonctl/documents/bash_completion.h"
#include "buttonctl/documents/commands_manual.h"
#include "buttonctl/documents/commands_page.h"
#include "buttonctl/documents/zsh_completion.h"
#include "buttonctl/session/exit_status.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>

#include <cstdio>

namespace {

using namespace buttondriver;

Outcome<QByteArray> read_file(const QString &name) {
  QFile file(name);
  if (!file.open(QIODevice::ReadOnly))
    return Failure{QStringLiteral("cannot read '%1': %2").arg(name, file.errorString())};
  return file.readAll();
}

Outcome<Done> write_file(const QString &name, const QString &text) {
  const QByteArray content = text.toUtf8();
  QSaveFile file(name);
  if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
    return Failure{QStringLiteral("cannot write '%1': %2").arg(name, file.errorString())};
  return Done{};
}

using Renewal = Outcome<QString> (*)(const QString &page, const buttonctl::CommandTable &commands);

Outcome<Done> update(const QString &page_name, Renewal renewed) {
  const Outcome<QByteArray> page = read_file(page_name);
  if (!page)
    return page.failure();
  const Outcome<QString> updated = renewed(QString::fromUtf8(*page), buttonctl::command_table());
  if (!updated)
    return updated.failure();
  return write_file(page_name, *updated);
}

Outcome<Done> update_all(const QStringList &names) {
  if (auto updated = update(names.at(1), buttonctl::with_commands); !updated)
    return updated;
  if (auto updated = update(names.at(2), buttonctl::with_commands_manual); !updated)
    return updated;
  if (auto written =
          write_file(names.at(3) + QLatin1String("/buttonctl"), buttonctl::bash_completion(buttonctl::command_table()));
      !written)
    return written;
  return write_file(names.at(3) + QLatin1String("/_buttonctl"), buttonctl::zsh_completion(buttonctl::command_table()));
}

} // namespace

/// Puts the commands into the page PAGE and into the manual page MANUAL, and writes their completion for each shell
/// into the folder COMPLETIONS.
int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 4) {
    std::fputs("usage: buttonctl_documents PAGE MANUAL COMPLETIONS\n", stderr);
    return buttonctl::exit_bad_usage;
  }
  const Outcome<Done> updated = update_all(arguments);
  if (!updated) {
    std::fprintf(stderr, "buttonctl_documents: %s\n", qUtf8Printable(updated.failure().text));
    return 1;
  }
  return buttonctl::exit_done;
}
