// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>

#include <optional>

/// The order of topics as a record that can be published: a JSON array of topics. Any thread.
namespace buttondriver::bridge {

/// Bytes of the longest one that is read: enough for 1,000 topics of 512 bytes, each byte of which is escaped.
inline constexpr int longest_order_record = 1000 * (2 * 512 + 3) + 2;

/// `topics`: UTF-8.
QByteArray make_order_record(const QVector<QByteArray> &topics);

/// The place of each topic of a record that anybody may have written; of a topic that stands there twice, the first
/// one. What is no topic is passed over. Nothing when it is no JSON array, or longer than one of all topics that a
/// panel may have.
std::optional<QHash<QByteArray, int>> read_order_record(const QByteArray &record);

} // namespace buttondriver::bridge
