// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/session/step.h"
#include "protocol/frames.h"

namespace buttondriver::buttonctl {

/// The steps of a command that sends one message.
inline Steps send(const QByteArray &message) { return {{Step::Kind::send, framed(message)}}; }

} // namespace buttondriver::buttonctl
