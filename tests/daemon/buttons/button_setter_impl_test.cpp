// SPDX-License-Identifier: Apache-2.0
#include "protocol/catalogue.h"
#include "support/device/dispatcher_fixture.h"

#include <QMetaMethod>

#include <gmock/gmock.h>

namespace buttondriver {
namespace {

using testing::Contains;
using testing::ElementsAre;

class ButtonSetterImplTest : public test::DispatcherFixture {};

std::string opcode_line(unsigned opcode, int size) {
  return "debug: buttondriver: opcode =  " + std::to_string(opcode) + " , size =  " + std::to_string(size) + " ";
}

QByteArray upload(const QByteArray &id, const QByteArray &size, char fill) {
  return "00000006" + id + size + QByteArray(120, fill).toHex();
}

TEST_F(ButtonSetterImplTest, each_message_has_a_line_with_its_opcode_and_its_size) {
  test::CapturedLog log;
  deliver({"0000000c", "00000063 00000000 00", "ffffffff"});
  const std::vector<std::string> lines = log.take();
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0], "debug: buttondriver: opcode =  12 , size =  4 ");
  EXPECT_EQ(lines[1], "debug: buttondriver: opcode =  99 , size =  9 ");
  EXPECT_EQ(lines[3], "debug: buttondriver: opcode =  4294967295 , size =  4 ");
}

TEST_F(ButtonSetterImplTest, a_ping_is_answered_with_one_framed_reply_each) {
  test::CapturedLog log;
  deliver({"0000000c", "0000000c"});
  EXPECT_EQ(reply.data().toHex().toStdString(), "00000004000000010000000400000001");
  EXPECT_THAT(log.take(), ElementsAre(opcode_line(12, 4), opcode_line(12, 4)));
}

TEST_F(ButtonSetterImplTest, a_null_message_is_dumped_byte_by_byte) {
  test::CapturedLog log;
  test::CapturedOutput output;
  deliver({"00000000", "00000000ff0a"});
  EXPECT_THAT(log.take(),
              ElementsAre(opcode_line(0, 4), "critical: ButtonSetterImpl::process_messages , TYPE_NULL_MESSAGE ",
                          "critical: size  =  4 ", opcode_line(0, 6),
                          "critical: ButtonSetterImpl::process_messages , TYPE_NULL_MESSAGE ",
                          "critical: size  =  6 "));
  EXPECT_EQ(output.take(),
            "data[0] = 0x0\ndata[1] = 0x0\ndata[2] = 0x0\ndata[3] = 0x0\n"
            "data[0] = 0x0\ndata[1] = 0x0\ndata[2] = 0x0\ndata[3] = 0x0\ndata[4] = 0xff\ndata[5] = 0xa\n");
}

TEST_F(ButtonSetterImplTest, what_a_client_sends_after_a_null_message_comes_after_its_lines_however_many_they_are) {
  const QByteArray text = "00000012 00000000 00000000 00000000 00000001 00000000 00000000 00000002 4100";
  const QByteArray rejected = "00000006 00000030 00000009";
  for (const int size : {4, 40'000, 300'000}) {
    test::CapturedOutput output;
    deliver({QByteArray(size, '\0').toHex(), text, QByteArray(size, '\0').toHex()});
    deliver({rejected});
    const std::string written = output.take();
    const std::string last_line = "data[" + std::to_string(size - 1) + "] = 0x0\n";
    const std::size_t first_end = written.find(last_line + "buttondriver: _screen_id");
    const std::size_t second_end = written.find(last_line + "invalid image data");
    EXPECT_NE(first_end, std::string::npos) << size;
    EXPECT_NE(second_end, std::string::npos) << size;
    EXPECT_LT(first_end, second_end) << size;
  }
}

TEST_F(ButtonSetterImplTest, what_another_client_sends_does_not_wait_for_the_lines_of_a_null_message) {
  test::CapturedOutput output;
  deliver({QByteArray(300'000, '\0').toHex()}, 1000);
  output.take();
  deliver({"00000006 00000030 00000009"}, 2000);
  EXPECT_EQ(output.take(), "invalid image data, size = 9\nbuttondriver:failed to upload image 48\n");
  deliver({}, 1000);
  EXPECT_EQ(output.take(), "") << "nobody waits for no message";
  dispatcher.reset();
  EXPECT_THAT(output.take(), testing::EndsWith("data[299999] = 0x0\n"));
}

TEST_F(ButtonSetterImplTest, has_one_slot) {
  const QMetaObject &type = ButtonSetterImpl::staticMetaObject;
  ASSERT_EQ(type.methodCount() - type.methodOffset(), 1);
  EXPECT_EQ(type.method(type.methodOffset()).methodSignature(), "update_timer()");
  EXPECT_EQ(type.method(type.methodOffset()).methodType(), QMetaMethod::Slot);
}

TEST_F(ButtonSetterImplTest, an_empty_message_counts_as_a_null_message) {
  test::CapturedLog log;
  deliver({""});
  EXPECT_THAT(log.take(),
              ElementsAre(opcode_line(0, 0), "critical: ButtonSetterImpl::process_messages , TYPE_NULL_MESSAGE ",
                          "critical: size  =  0 "));
}

TEST_F(ButtonSetterImplTest, every_other_opcode_is_reported_and_ignored) {
  std::vector<unsigned> opcodes = {0x80000000U, 0xFFFFFFFFU};
  for (unsigned opcode = 0; opcode < 64; ++opcode)
    if (const MessageType *type = find_message_type(opcode); !type || type->handling != Handling::server_handles)
      opcodes.push_back(opcode);
  for (const unsigned opcode : opcodes) {
    test::CapturedLog log;
    deliver({QByteArray::number(opcode, 16).rightJustified(8, '0') + "0000000500000005"});
    EXPECT_THAT(log.take(), ElementsAre(opcode_line(opcode, 12),
                                        "critical: ButtonSetterImpl::process_messages, unhandled switch case " +
                                            std::to_string(opcode) + " "));
  }
  EXPECT_THAT(finishedTransfers(), ElementsAre());
  EXPECT_TRUE(reply.data().isEmpty());
}

TEST_F(ButtonSetterImplTest, simple_messages_reach_their_registers) {
  struct Row {
    QByteArray message;
    std::vector<std::string> transfers;
  };
  const Row rows[] = {
      {"00000011 00000005 00000001 00000000", {"w 0900 1 6500"}},
      {"00000015 0000001f 00000001", {"w 0900 1 bf00"}},
      {"00000015 00000003 00000002", {"w 0900 1 8300"}},
      {"00000016 00000001 00000001", {"w 1003 1 0002"}},
      {"00000016 00000000 00000001", {"w 1003 1 0003"}},
      {"00000016 00000002 00000001", {}},
      {"00000016 ffffffff 00000001", {}},
      {"00000016 00000000 00000002", {}},
      {"00000010 ffffffff", test::blackout_of_all_screens},
  };
  for (const Row &row : rows) {
    deliver({row.message});
    EXPECT_EQ(finishedTransfers(), row.transfers) << row.message.toStdString();
  }
}

TEST_F(ButtonSetterImplTest, a_short_message_reads_as_if_zeros_followed) {
  // A status LED without its state, and a blackout whose screen id has only its first byte.
  deliver({"00000015 00000002", "00000010 00"});
  const std::vector<std::string> transfers = finishedTransfers();
  EXPECT_EQ(transfers.front(), "w 0900 1 8200");
  EXPECT_THAT(transfers, Contains("w 0a03 16384 0000 * 16384"));
}

TEST_F(ButtonSetterImplTest, the_led_line_comes_also_for_a_rejected_button) {
  test::CapturedLog log;
  test::CapturedOutput output;
  deliver({"00000011 00000063 ffffffff 00000064"});
  EXPECT_THAT(log.take(), ElementsAre(opcode_line(17, 16), "debug: Button  99  set to state  -1 "));
  EXPECT_EQ(output.take(), "buttondriver:invalid button id 99, setLEDState()\n");
}

TEST_F(ButtonSetterImplTest, a_text_line_ends_at_its_nul_its_count_or_its_message) {
  // The letter "A" and what follows it in each way; the same pixels must come out as for "A" alone.
  struct Row {
    const char *name;
    QByteArray message;
  };
  const Row rows[] = {
      {"NUL", "0000000f 00000000 00000000 00000001 00000004 41004242"},
      {"count", "0000000f 00000000 00000000 00000001 00000001 414242"},
      {"end of message", "0000000f 00000000 00000000 00000001 ffffffff 41"},
  };
  const auto pixels_of = [this](const QByteArray &message) {
    deliver({message});
    std::vector<std::uint16_t> pixels;
    device.waitFor(15);
    for (const test::RecordingDevice::Transfer &transfer : device.take())
      if (transfer.words.size() > 1)
        pixels = transfer.words;
    return pixels;
  };
  const std::vector<std::uint16_t> letter = pixels_of("0000000f 00000000 00000000 00000001 00000002 4100");
  ASSERT_EQ(letter.size(), 2048U);
  for (const Row &row : rows)
    EXPECT_EQ(pixels_of(row.message), letter) << row.name;
}

TEST_F(ButtonSetterImplTest, the_flag_chooses_white_on_black_or_black_on_white) {
  test::CapturedLog log;
  deliver({"0000000f 00000002 00000007 00000000 00000001 00"});
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0a08 1 0000", "w 0a08 1 4500", "w 0a09 1 8071",           //
                                               "w 0a08 1 0000", "w 0a08 1 2100", "w 0a09 1 0000",           //
                                               "w 0a08 1 0000", "w 0a08 1 2200", "w 0a09 2048 ffff * 2048", //
                                               "w 0a0e 1 0000", "w 0a0e 1 4400", "w 0a0f 1 8304",           //
                                               "w 0a0e 1 0000", "w 0a0e 1 4500", "w 0a0f 1 8001",           //
                                               "w 0a0e 1 0000", "w 0a0e 1 4400", "w 0a0f 1 8304",           //
                                               "w 0a0e 1 0000", "w 0a0e 1 4500", "w 0a0f 1 8001"));
  EXPECT_THAT(log.take(), ElementsAre(opcode_line(15, 21), "debug: buttondriver: Got a TFT text line message "));
  deliver({"0000000f 00000002 00000000 80000000 00000001 00"});
  EXPECT_EQ(finishedTransfers().at(8), "w 0a09 2048 0000 * 2048");
}

TEST_F(ButtonSetterImplTest, a_sub_text_line_is_logged_and_drawn) {
  test::CapturedLog log;
  test::CapturedOutput output;
  deliver({"00000012 00000000 00000002 00000003 00000004 00ff0000 0000ff00 00000005 2020202000"});
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0a02 1 0000", "w 0a02 1 4400", "w 0a03 1 3b1c",         //
                                               "w 0a02 1 0000", "w 0a02 1 4500", "w 0a03 1 3121",         //
                                               "w 0a02 1 0000", "w 0a02 1 2100", "w 0a03 1 0000",         //
                                               "w 0a02 1 0000", "w 0a02 1 2200", "w 0a03 512 07e0 * 512", //
                                               "w 0a0e 1 0000", "w 0a0e 1 4400", "w 0a0f 1 8304",         //
                                               "w 0a0e 1 0000", "w 0a0e 1 4500", "w 0a0f 1 8001"));
  EXPECT_THAT(log.take(), ElementsAre(opcode_line(18, 37), "debug: buttondriver: Got a TFT sub-text line message "));
  EXPECT_EQ(output.take(), "buttondriver: _screen_id = 0, _line_id = 2,  _offset =3, _num_chars = 4, _text = '    ', "
                           "_text_colour = 0xff0000, _back_colour = 0xff00.\n");
}

TEST_F(ButtonSetterImplTest, a_sub_text_longer_than_any_screen_is_logged_whole) {
  // In the log each byte 1 becomes four characters.
  for (const int size : {16 * 1024, 16 * 1024 + 1, 50'000}) {
    test::CapturedOutput output;
    const QByteArray text = "a" + QByteArray(size - 2, '\1') + "z";
    const QByteArray count = QByteArray::number(size, 16).rightJustified(8, '0');
    deliver({"00000012 00000000 00000000 00000000 00000001 00000000 00000000" + count + text.toHex()});
    std::string logged = "buttondriver: _screen_id = 0, _line_id = 0,  _offset =0, _num_chars = 1, _text = 'a";
    for (int i = 0; i < size - 2; ++i)
      logged += "\\x01";
    EXPECT_TRUE(output.take() == logged + "z', _text_colour = 0x0, _back_colour = 0x0.\n") << size;
  }
}

TEST_F(ButtonSetterImplTest, a_clients_text_cannot_start_a_line_of_the_log) {
  test::CapturedOutput output;
  deliver({"00000012 00000000 00000000 00000000 00000001 00000000 00000000 00000008 410a5b1b5b320000"});
  EXPECT_THAT(output.take(), testing::HasSubstr("_text = 'A\\x0a[\\x1b[2', _text"));
}

TEST_F(ButtonSetterImplTest, a_picture_is_logged_with_its_size_and_drawn_as_its_own_header_says) {
  test::CapturedOutput output;
  // 1 x 1 pixel, green; the count says 2.
  deliver({"00000013 00000001 00000000 00000000 00000002"
           "424d 3a000000 0000 0000 36000000 28000000 01000000 01000000 0100 1800"
           "00000000 00000000 00000000 00000000 00000000 00000000 00ff00 00"});
  EXPECT_THAT(finishedTransfers(), Contains("w 0a05 1 07e0"));
  EXPECT_EQ(output.take(), "buttondriver(DRAW_TFT_IMAGE): _screen_id = 1, _xoffset =0, _yoffset = 0, _size = 2.\n");
}

TEST_F(ButtonSetterImplTest, a_picture_message_without_a_picture_is_the_null_message) {
  test::CapturedOutput output;
  for (const auto &[message, screen] :
       {std::pair{"00000013 00000001 00000000 00000000 00000000", "1"}, {"00000013", "0"}}) {
    deliver({message});
    EXPECT_THAT(finishedTransfers(), ElementsAre());
    EXPECT_EQ(output.take(), std::string("buttondriver(DRAW_TFT_IMAGE): _screen_id = ") + screen +
                                 ", _xoffset =0, _yoffset = 0, _size = 0.\n"
                                 "Input parameter 'data' pointer is NULL.");
  }
}

TEST_F(ButtonSetterImplTest, uploads_are_kept_shared_up_to_22_and_private_above) {
  test::CapturedOutput output;
  deliver({upload("00000016", "00000078", 0x11), upload("00000017", "00000078", 0x22)}, 100);
  EXPECT_EQ(output.take(), "buttondriver:image uploaded 22\nbuttondriver:image uploaded 123\n");
  ASSERT_NE(dispatcher->image(22), nullptr);
  ASSERT_NE(dispatcher->image(123), nullptr);
  EXPECT_EQ(dispatcher->image(22)->bytes.front(), 0x11);
  EXPECT_EQ(dispatcher->image(123)->bytes.back(), 0x22);
  EXPECT_EQ(dispatcher->image(23), nullptr);
}

TEST_F(ButtonSetterImplTest, an_upload_replaces_the_image_of_its_id) {
  deliver({upload("00000007", "00000078", 0x11), upload("00000007", "00000078", 0x33)});
  EXPECT_EQ(dispatcher->image(7)->bytes.front(), 0x33);
}

TEST_F(ButtonSetterImplTest, an_upload_id_wraps_and_negative_ids_are_not_shifted) {
  test::CapturedOutput output;
  deliver({upload("7fffffff", "00000078", 0x11), upload("fffffffb", "00000078", 0x11)}, 1000);
  EXPECT_EQ(output.take(), "buttondriver:image uploaded -2147482649\nbuttondriver:image uploaded -5\n");
}

TEST_F(ButtonSetterImplTest, rejects_an_upload_of_another_size) {
  for (const auto &[size, number] : {std::pair{"00000077", "119"}, {"00000079", "121"}, {"ffffffff", "-1"}}) {
    test::CapturedOutput output;
    deliver({upload("00000030", size, 0x11)});
    EXPECT_EQ(output.take(),
              std::string("invalid image data, size = ") + number + "\nbuttondriver:failed to upload image 48\n");
    EXPECT_EQ(dispatcher->image(1048), nullptr);
  }
}

TEST_F(ButtonSetterImplTest, an_upload_cut_short_is_filled_up_with_zeros) {
  deliver({"00000006 00000005 00000078 ff"});
  ASSERT_NE(dispatcher->image(5), nullptr);
  EXPECT_EQ(dispatcher->image(5)->bytes[0], 0xFF);
  EXPECT_EQ(dispatcher->image(5)->bytes[1], 0x00);
}

TEST_F(ButtonSetterImplTest, has_23_built_in_images) {
  for (qint32 id = 0; id < 23; ++id)
    EXPECT_NE(dispatcher->image(id), nullptr) << id;
  EXPECT_EQ(dispatcher->image(23), nullptr);
  EXPECT_EQ(dispatcher->image(-1), nullptr);
}

TEST_F(ButtonSetterImplTest, reconfig_reads_the_levels_and_sends_the_screen_level) {
  root.writeLevels("lcd 40\nscr 70\n");
  test::CapturedOutput output;
  deliver({"0000000a 00000000"});
  EXPECT_EQ(output.take(), "buttondriver:reconfig \n");
  EXPECT_EQ(dispatcher->levels().lcd, 40);
  EXPECT_EQ(dispatcher->levels().scr, 70);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0800 1 ec00")); // 70 * 63 / 100 = 44
}

TEST_F(ButtonSetterImplTest, reconfig_with_the_bare_word_scr_sends_the_level_that_is_kept) {
  root.writeLevels("scr");
  test::CapturedOutput output;
  deliver({"0000000a 00000000"});
  EXPECT_EQ(dispatcher->levels().scr, 100);
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0800 1 ff00")); // 100 * 63 / 100 = 63
  root.writeLevels("scr 70\n");
  deliver({"0000000a 00000000"});
  root.writeLevels("scr\n");
  deliver({"0000000a 00000000"});
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0800 1 ec00", "w 0800 1 ec00"));
}

TEST_F(ButtonSetterImplTest, construction_reads_the_levels_and_sends_nothing) {
  root.writeLevels("scr 30\n");
  test::CapturedOutput output;
  const ButtonSetterImpl fresh(root.paths());
  EXPECT_EQ(output.take(), "buttondriver:reconfig \n");
  EXPECT_EQ(fresh.levels().scr, 30);
  EXPECT_THAT(finishedTransfers(), ElementsAre());
}

TEST_F(ButtonSetterImplTest, setting_a_button_image_names_an_unknown_button) {
  test::CapturedOutput output;
  dispatcher->setButtonImage(3, ButtonImage{});
  EXPECT_EQ(output.take(), "");
  dispatcher->setButtonImage(24, ButtonImage{});
  EXPECT_EQ(output.take(), "buttondriver:invalid button id 24, setButtonImage\n");
}

TEST_F(ButtonSetterImplTest, a_fault_does_not_stop_the_messages_after_it) {
  deliver({"00000063", "00000006", "00000010 00000009", "00000015 00000001 00000001"});
  EXPECT_THAT(finishedTransfers(), ElementsAre("w 0900 1 a100"));
}

} // namespace
} // namespace buttondriver
