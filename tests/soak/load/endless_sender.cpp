// SPDX-License-Identifier: Apache-2.0
#include "soak/load/endless_sender.h"

#include <chrono>
#include <string_view>
#include <thread>

namespace buttondriver::soak {

LoopbackSocket connect(Target &target, int receive_buffer) {
  ++target.connections;
  return LoopbackSocket(target.port, receive_buffer);
}

bool EndlessSender::sendSome(LoopbackSocket &socket, Target &target) {
  const std::size_t sent = socket.send(std::string_view(_bytes).substr(_place));
  _place = (_place + sent) % _bytes.size();
  target.bytes_sent += sent;
  return sent > 0;
}

void send_without_end(Target &target, std::string bytes, int receive_buffer) {
  EndlessSender sender(std::move(bytes));
  LoopbackSocket socket;
  while (!target.stop) {
    if (!socket.isOpen()) {
      socket = connect(target, receive_buffer);
      sender.startOver();
    }
    if (!sender.sendSome(socket, target))
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

} // namespace buttondriver::soak
