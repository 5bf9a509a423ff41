// SPDX-License-Identifier: Apache-2.0
#include "model/commands/shrinker.h"

#include "model/commands/message_bytes.h"
#include "protocol/catalogue.h"

#include <algorithm>

namespace buttondriver::test {

namespace {

class Shrinker {
public:
  Shrinker(Sequence sequence, const std::function<bool(const Sequence &)> &fails, int tries)
      : _sequence(std::move(sequence)), _fails(fails), _tries_left(tries) {}

  Sequence run() {
    while (removeCommands() || simplifyMessages()) {
    }
    return _sequence;
  }

private:
  /// Keeps `candidate` when it still fails.
  bool keepIfFailing(Sequence candidate) {
    if (_tries_left <= 0 || candidate == _sequence)
      return false;
    --_tries_left;
    if (!_fails(candidate))
      return false;
    _sequence = std::move(candidate);
    return true;
  }

  bool removeCommands() {
    bool any = false;
    for (std::size_t count = std::max<std::size_t>(_sequence.size() / 2, 1); count > 0; count /= 2) {
      for (std::size_t end = _sequence.size(); end > 0;) {
        const std::size_t begin = end > count ? end - count : 0;
        Sequence candidate = _sequence;
        candidate.erase(candidate.begin() + static_cast<std::ptrdiff_t>(begin),
                        candidate.begin() + static_cast<std::ptrdiff_t>(end));
        any |= keepIfFailing(std::move(candidate));
        end = begin;
      }
    }
    return any;
  }

  bool simplifyMessages() {
    bool any = false;
    for (std::size_t i = 0; i < _sequence.size(); ++i) {
      if (_sequence[i].bytes.empty())
        continue;
      any |= cut(i);
      any |= simplifyWords(i);
      any |= simplifyBytes(i);
    }
    return any;
  }

  bool replaceBytes(std::size_t i, std::string bytes) {
    Sequence candidate = _sequence;
    candidate[i].bytes = std::move(bytes);
    return keepIfFailing(std::move(candidate));
  }

  bool cut(std::size_t i) {
    bool any = false;
    for (std::size_t less = _sequence[i].bytes.size(); less > 0; less /= 2)
      while (less <= _sequence[i].bytes.size() &&
             replaceBytes(i, _sequence[i].bytes.substr(0, _sequence[i].bytes.size() - less)))
        any = true;
    return any;
  }

  /// Zero, one, a half, somewhat less or one less for numbers of four bytes; the opcode stays.
  bool simplifyWords(std::size_t i) {
    constexpr std::size_t looked_at = 80;
    constexpr std::size_t before_the_numbers = 10; // of a BMP file
    const MessageType *type = find_message_type(network_word(_sequence[i].bytes, 0));
    const bool is_picture = type && type->counted == Counted::image_bytes;
    bool any = false;
    for (std::size_t place = 4; place + 4 <= std::min(_sequence[i].bytes.size(), looked_at); place += 4) {
      // The fields of a picture's own header lie differently, their low bytes first.
      const bool is_low_first = is_picture && place >= type->head_size;
      if (is_low_first && place == type->head_size)
        place += before_the_numbers;
      while (place + 4 <= _sequence[i].bytes.size() && simplifyWord(i, place, is_low_first))
        any = true;
    }
    return any;
  }

  bool simplifyWord(std::size_t i, std::size_t place, bool is_low_first) {
    const auto shift = [is_low_first](std::size_t byte) { return 8 * (is_low_first ? byte : 3 - byte); };
    std::uint32_t bits = 0;
    for (std::size_t byte = 0; byte < 4; ++byte)
      bits |= std::uint32_t{static_cast<unsigned char>(_sequence[i].bytes[place + byte])} << shift(byte);
    const auto number = static_cast<std::int32_t>(bits);
    for (const std::int32_t plainer :
         {0, 1, -1, number / 2, number - number / 4, number - number / 16, number > 0 ? number - 1 : number + 1}) {
      const auto magnitude = [](std::int32_t value) { return value < 0 ? -std::int64_t{value} : std::int64_t{value}; };
      if (magnitude(plainer) > magnitude(number) || (magnitude(plainer) == magnitude(number) && plainer <= number))
        continue;
      std::string bytes = _sequence[i].bytes;
      for (std::size_t byte = 0; byte < 4; ++byte)
        bytes[place + byte] = static_cast<char>(static_cast<std::uint32_t>(plainer) >> shift(byte) & 0xFF);
      if (replaceBytes(i, std::move(bytes)))
        return true;
    }
    return false;
  }

  bool simplifyBytes(std::size_t i) {
    bool any = false;
    constexpr std::size_t looked_at = 120;
    for (std::size_t place = 4; place < std::min(_sequence[i].bytes.size(), looked_at); ++place) {
      if (_sequence[i].bytes[place] == '\0')
        continue;
      std::string bytes = _sequence[i].bytes;
      bytes[place] = '\0';
      any |= replaceBytes(i, std::move(bytes));
    }
    return any;
  }

  Sequence _sequence;
  const std::function<bool(const Sequence &)> &_fails;
  int _tries_left;
};

} // namespace

Sequence shortest_failing(Sequence sequence, const std::function<bool(const Sequence &)> &fails, int most_tries) {
  return Shrinker(std::move(sequence), fails, most_tries).run();
}

} // namespace buttondriver::test
