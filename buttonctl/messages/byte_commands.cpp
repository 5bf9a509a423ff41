// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/messages/byte_commands.h"

#include "buttonctl/messages/encoded_messages.h"
#include "buttonctl/messages/sending.h"

namespace buttondriver::buttonctl {

namespace {

Steps build_null(ArgumentReader &arguments) { return send(null_message(arguments.hexadecimal())); }

Steps build_raw(ArgumentReader &arguments) {
  if (arguments.atEnd())
    arguments.word("HEX");
  const QByteArray bytes = arguments.hexadecimal();
  if (!arguments.hasOption("unframed"))
    return send(bytes);
  if (bytes.isEmpty())
    arguments.fail(QStringLiteral("HEX is empty, so there is nothing to send"));
  return {{Step::Kind::send, bytes}};
}

} // namespace

Command null_command() {
  return {
      "null",
      "[HEX]...",
      "send a message that the daemon only logs",
      QStringLiteral("This is the message with opcode 0, which the daemon logs byte by byte. HEX is what follows the\n"
                     "opcode, two hexadecimal digits for each byte; blanks between bytes are ignored.\n"),
      "buttonctl null\n"
      "buttonctl null 01 02 ff\n",
      {},
      build_null};
}

Command raw_command() {
  return {
      "raw",
      "HEX...",
      "send any bytes as a message",
      QStringLiteral("HEX is the message from its opcode on, in network order, two hexadecimal digits for each byte.\n"
                     "The 4-byte length is put before it. Nothing else is checked.\n"),
      "buttonctl raw 00000010 00000001\n"
      "buttonctl raw --unframed 00000004 0000000c\n",
      {{"unframed", nullptr, "send the bytes as they are, without a length before them"}},
      build_raw};
}

} // namespace buttondriver::buttonctl
