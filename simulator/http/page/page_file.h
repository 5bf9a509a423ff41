// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "http/server/http_answer.h"

#include <QString>

#include <optional>

namespace buttondriver::simulator {

/// The page itself ("/") and what it is made of, as built into the program; nothing for any other path. `host` is the
/// name by which the browser has found the server, the only one that the page may talk to.
std::optional<HttpAnswer> page_file(const QString &path, const QByteArray &host);

} // namespace buttondriver::simulator
