// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "pictures/picture.h"

#include <QString>

namespace buttondriver::buttonctl {

/// How many pixels of two pictures of the same size have a component that differs by more than `tolerance`, 0 to 255.
int count_different_pixels(const Picture &expected, const Picture &actual, int tolerance = 0);

/// Three pictures of the same size side by side, each pixel as 3 x 3, parted by 12 grey columns: the expected one, the
/// actual one, and where they differ: red there, and elsewhere a quarter of the brightness. Above each, in 24 grey
/// rows, stands what it is.
Picture difference_picture(const Picture &expected, const Picture &actual);

/// What the names of difference pictures end with.
constexpr QLatin1String difference_ending(".difference.png");

/// The file in `folder` for the differences to `expected_file`: "screens/ready.png" becomes
/// "`folder`/ready.difference.png".
QString difference_file(const QString &folder, const QString &expected_file);

} // namespace buttondriver::buttonctl
