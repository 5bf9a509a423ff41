// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/values.h"

#include "files/owned_descriptor.h"
#include "files/regular_file.h"

#include <QFile>
#include <QHostAddress>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace buttondriver::bridge {

namespace {

bool is_letter_or_digit(char byte) {
  return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9');
}

bool is_utf8(const QByteArray &text) { return QString::fromUtf8(text).toUtf8() == text; }

/// A failure has no value, and the other way round.
Outcome<OwnedDescriptor> open_file(const QString &file, bool has_secret) {
  OwnedDescriptor descriptor = open_regular_file(QFile::encodeName(file).constData());
  if (!descriptor)
    return Failure{QStringLiteral("%1: %2").arg(file, errno == EINVAL ? QStringLiteral("not a regular file")
                                                                      : QString::fromLocal8Bit(std::strerror(errno)))};
  struct stat status = {};
  if (has_secret && (::fstat(descriptor.get(), &status) != 0 || (status.st_mode & S_IRWXO) != 0))
    return Failure{QStringLiteral("%1 is open to everybody: chmod o= %1").arg(file)};
  return descriptor;
}

} // namespace

std::optional<int> number_of(const QByteArray &text, int least, int most) {
  constexpr int most_digits = 9;
  const bool has_digits = std::all_of(text.begin(), text.end(), [](char byte) { return byte >= '0' && byte <= '9'; });
  if (text.isEmpty() || text.size() > most_digits || !has_digits)
    return {};
  const int number = text.toInt();
  if (number < least || number > most)
    return {};
  return number;
}

bool is_name(const QByteArray &text) {
  constexpr int most_characters = 64;
  return !text.isEmpty() && text.size() <= most_characters && std::all_of(text.begin(), text.end(), [](char byte) {
    return is_letter_or_digit(byte) || byte == '_' || byte == '.' || byte == '-';
  });
}

bool is_topic_prefix(const QByteArray &text) {
  constexpr int most_bytes = 1000;
  return !text.isEmpty() && text.size() <= most_bytes && !text.startsWith('$') && !text.startsWith('/') &&
         !text.endsWith('/') && !text.contains("//") && !text.contains('+') && !text.contains('#') && is_utf8(text);
}

bool is_host(const QByteArray &text) {
  constexpr int most_bytes = 253; // of a name in DNS
  if (text.contains(':'))
    return QHostAddress(QString::fromLatin1(text)).protocol() == QAbstractSocket::IPv6Protocol;
  return !text.isEmpty() && text.size() <= most_bytes && std::all_of(text.begin(), text.end(), [](char byte) {
    return is_letter_or_digit(byte) || byte == '_' || byte == '.' || byte == '-';
  });
}

Outcome<PanelAddress> address_of(const QByteArray &text) {
  const Failure failure{QStringLiteral("a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT")};
  const bool has_brackets = text.startsWith('[');
  const auto colon = has_brackets ? text.indexOf("]:") + 1 : text.indexOf(':');
  const bool has_port = colon > 0;
  QByteArray host = has_port ? text.left(colon) : text;
  if (has_brackets) {
    if (!host.endsWith(']'))
      return failure;
    host = host.mid(1, host.size() - 2);
  }
  if (!is_host(host) || host.contains(':') != has_brackets)
    return failure;
  PanelAddress address;
  address.host = QString::fromLatin1(host);
  if (!has_port)
    return address;
  constexpr int most = 65535;
  const std::optional<int> port = number_of(text.mid(colon + 1), 1, most);
  if (!port)
    return failure;
  address.port = static_cast<quint16>(*port);
  return address;
}

Outcome<QByteArray> read_password(const QString &file) {
  const auto opened = open_file(file, true);
  if (!opened)
    return opened.failure();
  std::array<char, 4096> buffer = {};
  const ssize_t count = ::read(opened->get(), buffer.data(), buffer.size());
  if (count < 0)
    return Failure{QStringLiteral("%1: %2").arg(file, QString::fromLocal8Bit(std::strerror(errno)))};
  const QByteArray text(buffer.data(), static_cast<int>(count));
  const auto end = text.indexOf('\n');
  if (end < 0 && count == static_cast<ssize_t>(buffer.size()))
    return Failure{QStringLiteral("%1: its first line is too long for a password").arg(file)};
  QByteArray password = end < 0 ? text : text.left(end);
  if (password.endsWith('\r'))
    password.chop(1);
  if (password.isEmpty() || password.contains('\0'))
    return Failure{QStringLiteral("%1: its first line is not a password").arg(file)};
  return password;
}

Outcome<Done> check_file(const QString &file, bool has_secret) {
  const auto opened = open_file(file, has_secret);
  if (!opened)
    return opened.failure();
  return Done();
}

} // namespace buttondriver::bridge
