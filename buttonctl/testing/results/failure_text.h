// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

namespace buttondriver::buttonctl {

/// What `buttonctl run FILE` has printed on standard error, as the end of a sentence about `file`: the "line 14: ..."
/// of "buttonctl: FILE:14: ...".
QString failure_text(const QString &file, const QByteArray &errors);

/// The "line 14: ..." of "FILE:14: ..."; any other text as it is.
QString with_line(const QString &file, const QString &text);

/// The last line that is not empty, of a program that has printed nothing a word about that.
QString last_line(const QByteArray &errors);

} // namespace buttondriver::buttonctl
