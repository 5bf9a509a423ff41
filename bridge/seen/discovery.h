// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/seen/publication.h"

#include <QByteArray>
#include <QVector>

namespace buttondriver::bridge {

/// Messages that make a panel's lamps, lines and availability known to home automation, in the form that Home Assistant
/// reads: retained JSON below `discovery_prefix`. `prefix`, `bridge` and `panel` are the names in our own topics.
QVector<Publication> discovery_messages(const QByteArray &discovery_prefix, const QByteArray &prefix,
                                        const QByteArray &bridge, const QByteArray &panel);
/// What takes them back: the same topics, empty.
QVector<Publication> discovery_removal(const QByteArray &discovery_prefix, const QByteArray &prefix,
                                       const QByteArray &bridge, const QByteArray &panel);

} // namespace buttondriver::bridge
