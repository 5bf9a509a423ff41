// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "outcome/outcome.h"

#include <QString>

namespace buttondriver::buttonctl {

/// Where the virtual panel answers when nobody says anything else.
inline const QString &default_panel_url() {
  static const QString url = QStringLiteral("http://127.0.0.1:8080");
  return url;
}

/// `text` as "http://HOST:PORT", without a slash at its end. `name` is what a failure calls it.
Outcome<QString> parse_panel_url(const QString &name, const QString &text);

} // namespace buttondriver::buttonctl
