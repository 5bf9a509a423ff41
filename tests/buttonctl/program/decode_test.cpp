// SPDX-License-Identifier: Apache-2.0
// `buttonctl decode`

#include "buttonctl/support/tool_run.h"
#include "buttonctl/support/working_folder.h"

#include <gtest/gtest.h>

namespace buttondriver::test {
namespace {

const QByteArray recording = "buttonctl recording 1\n"
                             "306261 1 000000080000001000000001\n"
                             "314856 2 000000040000000c\n";

TEST(DecodeTest, tells_messages_and_what_is_broken) {
  const WorkingFolder folder;
  folder.write("good.rec", recording);
  folder.write("bad.rec", recording + "1 1 0000\n" + "400000 1 0000000400000014\n");
  folder.write("raw.bin", QByteArray::fromHex("000000040000000c00000008000000"));
  folder.write("later.rec", "buttonctl recording 2\n");
  const std::string decoded = "0.306261 s, connection 1: BMS_BlackoutScreen screen_id=1\n"
                              "0.314856 s, connection 2: BMS_Ping\n";
  struct Row {
    QStringList words;
    QByteArray input;
    int exit_status;
    std::string output;
    std::string errors;
  };
  const Row rows[] = {
      {{"good.rec"}, "", 0, decoded, ""},
      {{"bad.rec"},
       "",
       1,
       decoded + "0.400000 s, connection 1: unknown 00000014\n",
       "buttonctl: bad.rec: line 5: a message has the opcode 20, which does not exist\n"
       "buttonctl: bad.rec: line 4: FRAME must begin with its length, 4 bytes, but has 2 bytes\n"},
      {{"raw.bin"},
       "",
       1,
       "offset 0: BMS_Ping\n",
       "buttonctl: raw.bin: offset 8: a message of 8 bytes is cut off after 3\n"},
      {{"-"}, recording, 0, decoded, ""},
      {{"-", "--batch"}, recording, 0, "message BMS_BlackoutScreen screen_id=1\nmessage BMS_Ping\n", ""},
      {{"-"}, "", 0, "", ""},
      {{"00000004", "0000000c"}, "", 0, "offset 0: BMS_Ping\n", ""},
      {{"00000004 0000000c 0"},
       "",
       1,
       "offset 0: BMS_Ping\n",
       "buttonctl: HEX: offset 8: the last byte has one digit, and is left out\n"},
      {{"missing.rec"}, "", 2, "", "buttonctl: decode: cannot read 'missing.rec': No such file or directory\n"},
      {{"00", "good.rec"}, "", 2, "", "buttonctl: decode: HEX must be hexadecimal digits; '00good.rec' is not\n"},
      {{"later.rec"}, "", 2, "", "buttonctl: decode: a recording of version '2'; this program reads version 1\n"},
      {{}, "", 2, "", "buttonctl: decode: FILE is missing; see 'buttonctl decode --help'\n"},
      {{"-", "--json", "--batch"}, "", 2, "", "buttonctl: decode: use only one of --json and --batch\n"},
  };
  for (const Row &row : rows) {
    const ToolResult result = run_tool(QStringList{"decode"} + row.words, row.input);
    EXPECT_EQ(result.exit_status, row.exit_status) << row.words.join(' ').toStdString();
    EXPECT_EQ(result.output, row.output);
    EXPECT_EQ(result.errors, row.errors);
  }
}

TEST(DecodeTest, prints_json) {
  const ToolResult result = run_tool({"decode", "--json", "00000004", "0000000c", "00"});
  EXPECT_EQ(result.exit_status, 1);
  EXPECT_EQ(result.output, R"({
    "faults": [
        {
            "offset": 8,
            "text": "a length of 4 bytes is cut off after 1"
        }
    ],
    "messages": [
        {
            "fields": [
                [
                    "opcode",
                    12
                ]
            ],
            "name": "BMS_Ping",
            "offset": 0,
            "size": 4
        }
    ],
    "version": 1
}
)");
}

TEST(DecodeTest, a_batch_sends_the_very_same_bytes) {
  // Of each kind of line: by its name, as bytes with a remark, empty, and as null.
  const QByteArray sent = "000000080000001000000001\n"
                          "0000001a0000000f00000001000000020000000100000006482223e92000\n"
                          "000000160000001300000000ffffffff0000000100000002424d\n"
                          "00000000\n"
                          "0000000600000000e91b\n"
                          "0000000400000063\n";
  const ToolResult lines = run_tool({"decode", "-", "--batch"}, sent);
  const ToolResult again = run_tool({"-n", "batch"}, QByteArray::fromStdString(lines.output));
  EXPECT_EQ(again.exit_status, 0) << again.errors;
  EXPECT_EQ(again.output, sent.toStdString()) << lines.output;
}

} // namespace
} // namespace buttondriver::test
