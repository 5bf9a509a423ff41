// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace buttondriver::test {

/// A server on 127.0.0.1 that does to its client what the test says, one step at a time: it may refuse, accept late,
/// read slowly, or hang up in the middle of a frame. Plain sockets, no thread of its own; a test whose client waits for
/// the peer runs the steps in another thread. A step that takes longer than 10 seconds throws std::runtime_error.
class ScriptedPeer {
public:
  enum class Door {
    open,   ///< the kernel completes connections, accepted by the peer or not
    closed, ///< connections are refused
    jammed, ///< connections are neither completed nor refused
  };
  /// The port is chosen by the system and held while the peer lives, whatever the door. A `receive_buffer` above 0
  /// asks the kernel to keep only about so many unread bytes.
  explicit ScriptedPeer(Door door = Door::open, int receive_buffer = 0);
  ~ScriptedPeer();
  ScriptedPeer(const ScriptedPeer &) = delete;
  ScriptedPeer &operator=(const ScriptedPeer &) = delete;

  std::uint16_t port() const;

  /// Opens a closed door.
  void open_door();
  /// Whether a client stands at the door right now, connected but not yet accepted.
  bool has_caller() const;
  /// Takes the next client; a former one is hung up on.
  void accept();
  /// Exactly `count` bytes, taken from the kernel `at_a_time`.
  std::string read(std::size_t count, std::size_t at_a_time = 65536);
  /// All bytes up to the client's end of the connection.
  std::string read_to_end();
  /// All of `bytes`.
  void write(const std::string &bytes);
  /// Closes the connection. The client gets an end of stream, or a reset when bytes were left unread.
  void hang_up();

private:
  std::size_t read_some(char *place, std::size_t count);
  void jam();

  int _door;
  int _client = -1;
  std::vector<int> _crowd; ///< connections that jam the door
};

} // namespace buttondriver::test
