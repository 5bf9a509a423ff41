// SPDX-License-Identifier: Apache-2.0
// A connection's stream, as its client sends it and in the pieces in which it may arrive, through the frame cutter, the
// dispatcher, the facade and its worker, down to the records of the register transfers.
//
// Input, from the end: how many sizes of pieces there are (0 to 3), the sizes, in turn (0: all that is left), the blink
// ticks after the last piece (0 to 63), the connection's offset of image ids. In front of them: the stream.
#include "buttons/button_factory.h"
#include "buttons/button_setter_impl.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/facade_rig.h"
#include "fuzz/support/input.h"
#include "fuzz/support/require.h"
#include "protocol/framing.h"
#include "protocol/records.h"
#include "server/frames/frame_reader.h"

#include <QIODevice>

#include <algorithm>
#include <cstring>
#include <unistd.h>

// The worker's pauses between button LEDs are not what is looked at.
extern "C" int usleep(useconds_t) { return 0; }

namespace buttondriver::fuzz {

namespace {

/// A connection: what arrives is appended, what is written to it is only counted.
class Connection : public QIODevice {
public:
  Connection() { open(QIODevice::ReadWrite); }

  void arrive(const QByteArray &bytes) { _bytes += bytes; }
  qint64 written() const { return _written; }

  bool isSequential() const override { return true; }
  qint64 bytesAvailable() const override { return _bytes.size() + QIODevice::bytesAvailable(); }

protected:
  qint64 readData(char *place, qint64 most) override {
    const auto count = std::min<qint64>(most, _bytes.size());
    std::copy_n(_bytes.constData(), count, place);
    _bytes.remove(0, static_cast<int>(count));
    return count;
  }
  qint64 writeData(const char *, qint64 count) override {
    _written += count;
    return count;
  }

private:
  QByteArray _bytes;
  qint64 _written = 0;
};

class Rig : public FacadeRig {
public:
  Rig() { ButtonFactory().createButtons(_buttons, &fpga()); }
  ~Rig() {
    for (const auto &[id, button] : _buttons)
      delete button;
  }

  const ButtonMap &buttons() const { return _buttons; }

private:
  ButtonMap _buttons;
};

bool is_ping(const QByteArray &message) {
  return message.size() >= 4 && std::memcmp(message.constData(), "\0\0\0\x0c", 4) == 0;
}

/// What is left in the stream is the beginning of a frame that is not complete.
void require_no_frame_left(QIODevice &stream) {
  const QByteArray prefix = stream.peek(frame_prefix_size);
  if (prefix.size() < static_cast<int>(frame_prefix_size))
    return;
  const std::uint32_t length = ByteView(prefix.constData(), frame_prefix_size).bigEndian32(0);
  require(stream.bytesAvailable() < qint64{frame_bytes_needed(length)}, "every complete frame is taken");
}

/// The sizes of the pieces in which the stream arrives.
class Pieces {
public:
  explicit Pieces(Input &input) : _count(input.number<std::uint8_t>() % 4U) {
    for (unsigned i = 0; i < _count; ++i)
      _sizes[i] = input.number<std::uint8_t>();
  }

  std::size_t next() {
    const std::size_t size = _count == 0 ? 0 : _sizes[_next++ % _count];
    return size == 0 ? static_cast<std::size_t>(-1) : size;
  }

private:
  unsigned _count;
  std::size_t _sizes[3] = {};
  std::size_t _next = 0;
};

void run(Rig &rig, Input input) {
  Pieces pieces(input);
  const unsigned ticks = input.number<std::uint8_t>() % 64U;
  const auto client_id = input.number<qint32>();

  ButtonSetterImpl dispatcher(rig.paths());
  dispatcher.setButtons(rig.buttons());
  dispatcher.setFPGA(&rig.fpga());
  Connection connection;
  qint64 arrived = 0;
  qint64 taken = 0;
  qint64 pings = 0;
  while (!input.empty()) {
    const std::vector<std::uint8_t> piece = input.bytes(pieces.next());
    connection.arrive(QByteArray(reinterpret_cast<const char *>(piece.data()), static_cast<int>(piece.size())));
    arrived += static_cast<qint64>(piece.size());
    // A null message is the last one of each turn.
    std::vector<QByteArray> messages;
    for (auto turn = take_frames(connection); !turn.empty(); turn = take_frames(connection))
      messages.insert(messages.end(), turn.begin(), turn.end());
    require_no_frame_left(connection);
    for (const QByteArray &message : messages) {
      taken += frame_prefix_size + message.size();
      pings += is_ping(message) ? 1 : 0;
    }
    dispatcher.process_messages(messages, &connection, client_id);
  }
  require(taken + connection.bytesAvailable() == arrived, "no byte of the stream is lost or read twice");
  require(connection.written() == pings * qint64{frame_prefix_size + sizeof(BMS_PingReply)},
          "a ping has one answer, and nothing else has one");
  for (unsigned i = 0; i < ticks; ++i)
    dispatcher.update_timer();
  rig.settle();
  rig.panel().require_whole_windows();
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static buttondriver::fuzz::Rig rig;
  buttondriver::fuzz::run(rig, {data, size});
  return 0;
}
