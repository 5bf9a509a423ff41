// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/command_table.h"
#include "buttonctl/documents/bash_completion.h"
#include "buttonctl/documents/commands_page.h"
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

Outcome<Done> update(const QString &page_name, const QString &completion_name) {
  const Outcome<QByteArray> page = read_file(page_name);
  if (!page)
    return page.failure();
  const Outcome<QString> updated = buttonctl::with_commands(QString::fromUtf8(*page), buttonctl::command_table());
  if (!updated)
    return updated.failure();
  if (auto written = write_file(page_name, *updated); !written)
    return written;
  return write_file(completion_name, buttonctl::bash_completion(buttonctl::command_table()));
}

} // namespace

/// Puts the commands into the page PAGE, and writes their completion to COMPLETION.
int main(int argc, char **argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() != 3) {
    std::fputs("usage: buttonctl_documents PAGE COMPLETION\n", stderr);
    return buttonctl::exit_bad_usage;
  }
  const Outcome<Done> updated = update(arguments.at(1), arguments.at(2));
  if (!updated) {
    std::fprintf(stderr, "buttonctl_documents: %s\n", qUtf8Printable(updated.failure().text));
    return 1;
  }
  return buttonctl::exit_done;
}
