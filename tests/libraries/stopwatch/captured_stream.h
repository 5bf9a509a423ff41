// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace stopwatch::test {

/// Collects what the code under test writes to std::cout or std::cerr while it lives; the stream's format state is put
/// back at the end.
class CapturedStream {
public:
  explicit CapturedStream(std::ostream &stream) : _stream(stream), _format(nullptr) {
    _format.copyfmt(stream);
    _previous = stream.rdbuf(&_buffer);
  }
  ~CapturedStream() {
    _stream.rdbuf(_previous);
    _stream.copyfmt(_format);
  }
  CapturedStream(const CapturedStream &) = delete;
  CapturedStream &operator=(const CapturedStream &) = delete;

  /// What came so far; the collection then starts again.
  std::string take() {
    std::string text = _buffer.str();
    _buffer.str("");
    return text;
  }

private:
  std::ostream &_stream;
  std::ios _format;
  std::streambuf *_previous;
  std::stringbuf _buffer;
};

} // namespace stopwatch::test
