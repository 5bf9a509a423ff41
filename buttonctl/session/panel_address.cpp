// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/panel_address.h"

#include <QUrl>

namespace buttondriver::buttonctl {

Outcome<QString> parse_panel_url(const QString &name, const QString &text) {
  const QString address = text.endsWith(QLatin1Char('/')) ? text.left(text.size() - 1) : text;
  const QUrl url(address, QUrl::StrictMode);
  if (!url.isValid() || url.scheme() != QLatin1String("http") || url.host().isEmpty() || !url.path().isEmpty() ||
      url.hasQuery() || url.hasFragment())
    return Failure{QStringLiteral("%1 must be http://HOST:PORT, not '%2'").arg(name, text)};
  return address;
}

} // namespace buttondriver::buttonctl
