// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QtGlobal>

namespace buttondriver::bridge {

/// What was published and is not yet written or, with quality of service 1, not yet acknowledged. Bounds it: a broker
/// that does not read must not fill the memory.
class WaitingMessages {
public:
  static constexpr int most_messages = 50'000; ///< a number of a message has 16 bits
  static constexpr qint64 most_bytes = 32 * 1024 * 1024;
  /// For messages of quality of service 0, which say nothing that will not be said again.
  static constexpr int most_messages_0 = 1'000;
  static constexpr qint64 most_bytes_0 = 1024 * 1024;

  bool hasRoomFor(qint64 bytes, int quality_of_service) const {
    return quality_of_service == 0 ? _sizes.size() < most_messages_0 && _bytes + bytes <= most_bytes_0
                                   : _sizes.size() < most_messages && _bytes + bytes <= most_bytes;
  }
  void add(int number, qint64 bytes) {
    _sizes.insert(number, bytes);
    _bytes += bytes;
  }
  /// False if `number` does not wait.
  bool remove(int number) {
    const auto size = _sizes.constFind(number);
    if (size == _sizes.constEnd())
      return false;
    _bytes -= *size;
    _sizes.erase(size);
    return true;
  }
  int count() const { return static_cast<int>(_sizes.size()); }
  qint64 bytes() const { return _bytes; }

private:
  QHash<int, qint64> _sizes;
  qint64 _bytes = 0;
};

} // namespace buttondriver::bridge
