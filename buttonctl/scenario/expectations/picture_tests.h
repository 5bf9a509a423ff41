// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/argument_reader.h"
#include "buttonctl/scenario/expectations/expectation.h"

namespace buttondriver::buttonctl {

// Nothing when the expectation `name` asks something else.

/// Of expect-pixel.
std::optional<PixelTest> pixel_test(const QString &name, ArgumentReader &arguments);

/// Of expect-screen and expect-region. A picture that is there but cannot be read is a failure of the arguments, unless
/// it is going to be replaced anyway.
std::optional<PictureTest> picture_test(const QString &name, ArgumentReader &arguments, bool replaces_pictures);

} // namespace buttondriver::buttonctl
