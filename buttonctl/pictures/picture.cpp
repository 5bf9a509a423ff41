// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/pictures/picture.h"

namespace buttondriver::buttonctl {

static_assert(sizeof(Colour) == 3, "the components of a picture lie side by side");

Picture::Picture(QSize size, Colour fill)
    : _size(size), _pixels(static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height()), fill) {}

} // namespace buttondriver::buttonctl
