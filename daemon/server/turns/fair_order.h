// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <set>
#include <unordered_map>

namespace buttondriver {

/// Who of those that want something that is scarce comes next, so that all get equal shares of it: start-time fair
/// queueing. Each member has a start, which grows by what its turns have cost; the least start comes first, and among
/// equal ones who joined first. A start falls behind that of the last turn by `credit` at most: who has wanted nothing
/// for a while saves no more up than that, but comes before those that always want something.
///
/// So who wants less than an equal share waits for nobody's turns but those of others like it. And over any time in
/// which two members always want something, what they get differs by the credit and one turn of each at most.
template <class Member> class FairOrder {
public:
  using Cost = std::chrono::nanoseconds;

  explicit FairOrder(Cost credit) : _credit(credit) {}

  /// Has no effect on a member that waits already.
  void join(Member *member) {
    Place &place = _places[member];
    if (place.number != 0)
      return;
    place.start = std::max(place.start, _now - _credit);
    place.number = ++_last_number;
    _line.insert({place.start, place.number, member});
  }

  /// It waits no longer. What its turns have cost stays with it.
  void leave(Member *member) {
    const auto found = _places.find(member);
    if (found != _places.end())
      takeOut(member, found->second);
  }

  /// It will never come again; another member may have its address.
  void forget(Member *member) {
    leave(member);
    _places.erase(member);
  }

  bool isEmpty() const { return _line.empty(); }
  std::size_t size() const { return _line.size(); }

  /// Who comes next, and waits no longer; null when nobody waits. Its turn begins now.
  Member *next() {
    if (_line.empty())
      return nullptr;
    Member *const member = _line.begin()->member;
    Place &place = _places[member];
    takeOut(member, place);
    place.is_served = true;
    _now = std::max(_now, place.start);
    return member;
  }

  /// A turn of `member` has cost so much: the one that `next` gave it, or one that it had elsewhere. It may wait again.
  void charge(Member *member, Cost cost) {
    Place &place = _places[member];
    const std::uint64_t number = place.number;
    takeOut(member, place);
    if (!place.is_served) {
      place.start = std::max(place.start, _now);
      if (_line.empty())
        _now = place.start;
    }
    place.is_served = false;
    place.start += cost;
    if (number == 0)
      return;
    place.number = number;
    _line.insert({place.start, number, member});
  }

private:
  struct Place {
    Cost start{};
    std::uint64_t number = 0; // 0 while it does not wait
    bool is_served = false;   // between `next` and the charge for that turn
  };

  struct Waiting {
    Cost start;
    std::uint64_t number;
    Member *member;
    bool operator<(const Waiting &other) const {
      return start != other.start ? start < other.start : number < other.number;
    }
  };

  void takeOut(Member *member, Place &place) {
    if (place.number == 0)
      return;
    _line.erase({place.start, place.number, member});
    place.number = 0;
  }

  const Cost _credit;
  std::unordered_map<Member *, Place> _places;
  std::set<Waiting> _line;
  Cost _now{}; // the start of the last turn
  std::uint64_t _last_number = 0;
};

} // namespace buttondriver
