// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <string_view>

namespace buttondriver::bridge {

/// One line that says that there is no topic `tail`, and which one may have been meant: one whose words differ in few
/// letters, with the numbers of `tail`; else those that there are.
QString no_such_topic(std::string_view tail);

} // namespace buttondriver::bridge
