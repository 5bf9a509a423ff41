// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/encoders.h"
#include "protocol/frames.h"

namespace buttondriver::buttonctl {

/// A ping as it lies on the stream.
inline QByteArray framed_ping() { return framed(hton_BMS_Ping()); }

} // namespace buttondriver::buttonctl
