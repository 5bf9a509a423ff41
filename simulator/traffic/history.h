// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <utility>

namespace buttondriver::simulator {

/// The last `capacity` of many things, numbered from 1 in order of arrival; older ones are dropped.
template <class Entry> class History {
public:
  explicit History(std::size_t capacity) : _capacity(capacity) {}

  void add(Entry entry) {
    if (_entries.size() == _capacity)
      _entries.pop_front();
    _entries.push_back(std::move(entry));
    ++_last;
  }

  /// Numbers go on after those of what was dropped.
  void clear() {
    _entries.clear();
    _cleared = _last;
  }

  std::size_t size() const { return _entries.size(); }
  /// The number of the newest thing, also when it has been dropped since; 0 when there was none.
  std::uint64_t last() const { return _last; }
  /// The number of the newest thing that clear() has dropped; 0 when it has dropped none.
  std::uint64_t cleared() const { return _cleared; }
  /// The number of the oldest thing that is still here; last() + 1 when nothing is.
  std::uint64_t first() const { return _last - _entries.size() + 1; }
  /// The thing with a number from first() to last().
  const Entry &at(std::uint64_t number) const { return _entries[static_cast<std::size_t>(number - first())]; }

private:
  std::size_t _capacity;
  std::uint64_t _last = 0;
  std::uint64_t _cleared = 0;
  std::deque<Entry> _entries;
};

} // namespace buttondriver::simulator
