// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/page_file.h"

#include <QDirIterator>
#include <QFile>
#include <QSet>

// Resources of a static library are there once somebody asks for them, which only works outside of namespaces.
static void take_page_files_in() { Q_INIT_RESOURCE(web); }

namespace buttondriver::simulator {

namespace {

QByteArray type_of_file(const QString &name) {
  if (name.endsWith(QLatin1String(".html")))
    return "text/html; charset=utf-8";
  if (name.endsWith(QLatin1String(".css")))
    return "text/css; charset=utf-8";
  if (name.endsWith(QLatin1String(".js")))
    return "text/javascript; charset=utf-8";
  return "image/svg+xml";
}

/// The paths of all files of the page, as requests name them: "/panel/screen.js".
QSet<QString> paths_of_files() {
  take_page_files_in();
  const QString root = QStringLiteral(":/web");
  QSet<QString> paths;
  for (QDirIterator files(root, QDir::Files, QDirIterator::Subdirectories); files.hasNext();)
    paths += files.next().mid(root.size());
  return paths;
}

} // namespace

std::optional<HttpAnswer> page_file(const QString &path, const QByteArray &host) {
  static const QSet<QString> paths = paths_of_files();
  const QString name = path == QLatin1String("/") ? QStringLiteral("/index.html") : path;
  if (!paths.contains(name))
    return std::nullopt;
  QFile file(QStringLiteral(":/web") + name);
  if (!file.open(QIODevice::ReadOnly))
    return std::nullopt;
  HttpAnswer answer;
  answer.type = type_of_file(name);
  answer.body = file.readAll();
  answer.headers.emplace_back("Content-Security-Policy",
                              "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob: data:; "
                              "connect-src 'self' ws://" +
                                  host + "; base-uri 'none'; form-action 'none'; frame-ancestors 'none'");
  return answer;
}

} // namespace buttondriver::simulator
