// SPDX-License-Identifier: Apache-2.0
// Looks a message up, builds a frame and reads one, without Qt.
#include <buttondriver/protocol/converters.h>
#include <buttondriver/protocol/decode.h>
#include <buttondriver/protocol/framing.h>

#include <cstdio>

using namespace buttondriver;

int main() {
  if (const MessageType *type = find_message_type(BMS_SetLEDState::code))
    std::printf("%u %s: %s\n", type->opcode, type->name, type->meaning);

  BMS_SetLEDState led{BMS_SetLEDState::code, 5, -1, 500};
  hton_BMS_SetLEDState(&led, &led);
  const auto prefix = frame_prefix(static_cast<std::uint32_t>(message_size<BMS_SetLEDState>()));
  std::printf("frame:");
  for (const unsigned byte : prefix)
    std::printf(" %02x", byte);
  const auto *bytes = reinterpret_cast<const unsigned char *>(&led);
  for (std::size_t i = 0; i < sizeof led; ++i)
    std::printf(" %02x", unsigned{bytes[i]});

  // What came from a socket may be shorter than it should be: the last field is missing here, and reads as 0.
  const std::uint8_t received[] = {0, 0, 0, 17, 0, 0, 0, 7, 0, 0, 0, 1};
  const auto record = decode<BMS_SetLEDState>(ByteView(received, sizeof received));
  std::printf("\nbutton %d, state %d, time %d\n", record.button_id, record.state, record.time);
  return 0;
}
