// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::soak {

/// A ping with its length before it.
std::string ping_frame();
/// A request to read the level file again.
std::string reconfig_frame();
/// A frame that fills a screen with a picture.
std::string picture_frame();
/// Some hundred frames of all other kinds that do something to the panel, and some that do not.
std::string many_small_frames();

} // namespace buttondriver::soak
