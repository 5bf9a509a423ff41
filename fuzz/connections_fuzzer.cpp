// SPDX-License-Identifier: Apache-2.0
// The command server with a few clients on real connections: who sends what in which pieces, who ends in which way,
// who has to wait meanwhile. The server is built with small limits, see support/small_limits, so that all of them are
// reached. After the last step all may go on, and all that was sent must have been delivered and answered once.
//
// Input, from the front: the number of places, flags, then steps. A step is a byte, its low five bits the kind of step
// and its high three bits the client, followed by what that kind takes.
#include "fuzz/fuzz_target.h"
#include "fuzz/support/connections/server_rig.h"
#include "fuzz/support/connections/steps.h"
#include "fuzz/support/connections/system_calls.h"
#include "fuzz/support/input.h"
#include "fuzz/support/quiet.h"
#include "protocol/framing.h"
#include "server/limits.h"

#include <QCoreApplication>

#include <array>
#include <chrono>

namespace buttondriver::fuzz {

namespace {

constexpr std::size_t most_places = 6;
constexpr std::size_t most_steps = 300;
constexpr qint64 most_bytes = 16 * 1024;

enum Flag : std::uint8_t {
  waits_for_ever_for_room = 1,   // for large frames
  holds_after_null_messages = 2, // who sent one
  ends_at_once = 4,              // with the connections that there are then
};

using steps::Step;

QByteArray frame(quint32 length, const QByteArray &message) {
  const auto prefix = frame_prefix(length);
  return QByteArray(reinterpret_cast<const char *>(prefix.data()), frame_prefix_size) + message;
}

QByteArray frame(const QByteArray &message) { return frame(static_cast<quint32>(message.size()), message); }

class Script {
public:
  Script(ServerRig &rig, Input &input) : _rig(rig), _input(input) {}

  void run() {
    for (std::size_t steps = 0; steps < most_steps && !_input.empty(); ++steps) {
      const std::uint8_t byte = next();
      take(static_cast<Step>(byte % 32U), _clients[byte / 32U]);
    }
  }

private:
  std::uint8_t next() {
    const std::vector<std::uint8_t> byte = _input.bytes(1);
    return byte.empty() ? std::uint8_t{0} : byte.front();
  }

  void put(Client &client, const QByteArray &bytes) {
    _put += bytes.size();
    if (_put <= most_bytes)
      client.put(bytes);
  }

  void take(Step step, Conversation *&conversation) {
    switch (step) {
    case Step::round:
      return _rig.runRound();
    case Step::rounds:
      for (unsigned left = next() % 16U; left > 0; --left)
        _rig.runRound();
      return;
    case Step::connect:
      if (!conversation || conversation->client.isGone())
        conversation = _rig.connectClient(static_cast<std::uint8_t>(1 + next() % 4U));
      return;
    case Step::piece:
      return _rig.setPiece(1 + next() * 4);
    case Step::room:
      system_calls.room = next();
      return;
    case Step::refusals:
      system_calls.refusals = next() % 8;
      return;
    default:
      if (!rule(step) && conversation)
        talk(step, *conversation);
    }
  }

  /// What concerns everybody.
  bool rule(Step step) {
    switch (step) {
    case Step::pause:
      _rig.pause();
      return true;
    case Step::resume:
      _rig.resume();
      return true;
    case Step::hold_all:
      _rig.holdAll();
      return true;
    case Step::release_all:
      _rig.releaseAll();
      return true;
    case Step::hold_null_messages:
      _rig.holdNullMessages();
      return true;
    case Step::release_null_messages:
      _rig.releaseNullMessages();
      return true;
    default:
      return false;
    }
  }

  void talk(Step step, Conversation &conversation) {
    Client &client = conversation.client;
    switch (step) {
    case Step::finish:
      return client.finish();
    case Step::close:
      return client.leave(false);
    case Step::reset:
      return client.leave(true);
    case Step::read_answers:
      return client.readAnswers();
    case Step::hold:
      return _rig.hold(conversation);
    case Step::release:
      return _rig.release(conversation);
    default:
      put(client, bytesOf(step));
      client.flush(next() % 2U == 0 ? 0 : most_bytes);
    }
  }

  QByteArray bytesOf(Step step) {
    switch (step) {
    case Step::pings:
      return frame(QByteArray("\0\0\0\x0c", 4)).repeated(next() % 64);
    case Step::work: {
      const int count = next() % 64;
      return frame(QByteArray("work") + static_cast<char>(next())).repeated(count);
    }
    case Step::null_messages:
      return frame(QByteArray("\0\0\0\0x", 5)).repeated(next() % 4);
    case Step::empty_frames:
      return frame(QByteArray()).repeated(next() % 16);
    case Step::any_bytes:
      return takeBytes(next() % 32U);
    case Step::frame_of_any_length:
      return frame(takeBytes(next() % 32U));
    case Step::large_frame:
      return frame(QByteArray(static_cast<int>(limits::read_ahead) - 8 + next() * 8, 'x'));
    case Step::frame_that_is_too_long: {
      const quint32 length = limits::largest_frame + next();
      return frame(length, QByteArray(static_cast<int>(limits::largest_frame) + next(), 'x'));
    }
    case Step::length_that_wraps:
      return frame(0xFFFFFFFCU + next() % 4U, takeBytes(next() % 8U));
    default:
      return {};
    }
  }

  QByteArray takeBytes(std::size_t count) {
    const std::vector<std::uint8_t> bytes = _input.bytes(count);
    return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()));
  }

  ServerRig &_rig;
  Input &_input;
  std::array<Conversation *, 8> _clients{};
  qint64 _put = 0;
};

void run(Input input) {
  const std::vector<std::uint8_t> head = input.bytes(2);
  const unsigned flags = head.size() > 1 ? head[1] : 0U;
  const std::size_t places = head.empty() ? 1 : 1 + head[0] % most_places;
  const bool is_patient = (flags & waits_for_ever_for_room) != 0;
  limits::large_frame_patience = std::chrono::hours(is_patient ? 1 : 0);
  limits::budget_retry_ms = is_patient ? 3'600'000 : 0;
  ServerRig rig(places);
  rig.holdAfterNullMessages((flags & holds_after_null_messages) != 0);
  Script(rig, input).run();
  if ((flags & ends_at_once) == 0)
    rig.finish();
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static int count = 0;
  static const bool is_quiet = (buttondriver::fuzz::drop_standard_output(), true);
  static QCoreApplication application(count, nullptr);
  static_cast<void>(is_quiet);
  buttondriver::fuzz::run({data, size});
  return 0;
}
