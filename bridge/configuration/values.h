// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "bridge/configuration/configuration.h"
#include "outcome/outcome.h"

#include <QByteArray>

#include <optional>

/// The values of the configuration file. A failure says what would be right.
namespace buttondriver::bridge {

/// Digits only. Nothing if it is not a number of `least` to `most`.
std::optional<int> number_of(const QByteArray &text, int least, int most);
/// Whether `text` can be a name: 1 to 64 of A-Z, a-z, 0-9, "_", "." and "-".
bool is_name(const QByteArray &text);
/// Whether `text` can be the first levels of topics: UTF-8, no empty level, no "+" and "#", no "$" in front.
bool is_topic_prefix(const QByteArray &text);
/// HOST, HOST:PORT, [ADDRESS] or [ADDRESS]:PORT.
Outcome<PanelAddress> address_of(const QByteArray &text);
/// A host's name or address, without brackets.
bool is_host(const QByteArray &text);

/// The first line of a file with a password. It must not be open to everybody.
Outcome<QByteArray> read_password(const QString &file);
/// Fails if `file` is not a regular file that can be read. One with a secret must not be open to everybody.
Outcome<Done> check_file(const QString &file, bool has_secret);

} // namespace buttondriver::bridge
