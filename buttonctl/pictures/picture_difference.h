// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QImage>
#include <QString>

namespace buttondriver::buttonctl {

/// Pixels that are not alike; where one picture is larger, all that the other one does not have.
int count_different_pixels(const QImage &expected, const QImage &actual);

/// Three pictures side by side, parted by 4 grey columns: the expected one, the actual one, and where they differ: red
/// there, and elsewhere a quarter of the brightness. Opaque; parts that a picture does not have are black.
QImage difference_picture(const QImage &expected, const QImage &actual);

/// "ready.png" becomes "ready.difference.png".
QString difference_file(const QString &expected_file);

} // namespace buttondriver::buttonctl
