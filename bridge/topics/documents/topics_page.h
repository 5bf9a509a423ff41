// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::bridge {

/// docs/topics.md: how panels are driven over MQTT, in Markdown, for readers who know MQTT and not the panel. The
/// topics come from their table, ranges from the catalogue of messages.
std::string topics_page();

} // namespace buttondriver::bridge
