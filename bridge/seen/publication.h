// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

namespace buttondriver::bridge {

/// What the bridge itself tells others through the broker.
struct Publication {
  QByteArray topic; ///< the whole of it
  QByteArray payload;
  bool is_retained = false;
};

} // namespace buttondriver::bridge
