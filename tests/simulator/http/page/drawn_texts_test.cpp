// SPDX-License-Identifier: Apache-2.0
// What the state says of texts: as they were sent, and as they stand on the screens.

#include "protocol/encode.h"
#include "protocol/records.h"
#include "web_page_fixture.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace buttondriver::simulator {
namespace {

/// With a font of 8 x 16: sixteen columns, eight lines.
class DrawnTextsTest : public WebPageFixture {
protected:
  void sendLine(int screen, int line, const QByteArray &text, bool is_white_on_black = true) {
    const BMS_TFTTextLine head{BMS_TFTTextLine::code, screen, line, is_white_on_black, size_of(text)};
    send(encoded(head, text.constData(), head.n));
  }
  void sendPart(int screen, int line, int column, const QByteArray &text) {
    const BMS_TFTSubTextLine head{BMS_TFTSubTextLine::code,
                                  screen,
                                  line,
                                  column,
                                  static_cast<std::int32_t>(text.size()),
                                  0xFF0000,
                                  0x00FF00,
                                  size_of(text)};
    send(encoded(head, text.constData(), head.n));
  }
  void clear() { send(encoded(BMS_BlackoutScreen{BMS_BlackoutScreen::code, 0})); }
  void send(const QByteArray &message) { sendMessages(encode_length(message) + message.toHex()); }

  /// Const, so that [] has the same type with each version of Qt.
  const QJsonObject state() const { return get("/state.json").json(); }
  /// The first screen, as {"text", "drawn"}.
  std::string firstScreen() const {
    return QJsonDocument(state()[QLatin1String("screens")][0].toObject()).toJson(QJsonDocument::Compact).toStdString();
  }

  void useFont(int width, int height) {
    root.writeFontSize(width, height);
    simulation->daemon()->fpga().check_font_settings(root.launcherConfiguration());
  }

private:
  static std::uint32_t size_of(const QByteArray &text) { return static_cast<std::uint32_t>(text.size()); }
  static QByteArray encode_length(const QByteArray &message) {
    return QByteArray::number(static_cast<qulonglong>(message.size()), 16).rightJustified(8, '0');
  }
};

TEST_F(DrawnTextsTest, a_line_stands_there_as_it_was_sent) {
  sendLine(0, 1, "AB \xE9");
  sendLine(0, 2, "WA", false);
  EXPECT_EQ(firstScreen(), R"({"drawn":["","AB é","WA"],"text":["","AB é","WA"]})");
  EXPECT_EQ(state()[QLatin1String("font")].toObject(),
            QJsonDocument::fromJson(R"({"width":8,"height":16,"fault":null})").object());
}

TEST_F(DrawnTextsTest, what_looks_the_same_is_read_as_it_was_sent) {
  sendLine(0, 0, "\x19|\x19|");
  EXPECT_EQ(firstScreen(), R"({"drawn":["\u0019|\u0019|"],"text":["\u0019|\u0019|"]})");
}

TEST_F(DrawnTextsTest, each_screen_has_its_own) {
  sendLine(1, 0, "A");
  sendLine(2, 0, "B");
  EXPECT_EQ(state()[QLatin1String("screens")].toArray(),
            QJsonDocument::fromJson(R"([{"text":[],"drawn":[]},{"text":["A"],"drawn":["A"]},
                                        {"text":["B"],"drawn":["B"]}])")
                .array());
}

TEST_F(DrawnTextsTest, a_text_that_is_longer_than_its_line_ends_at_the_edge) {
  sendLine(0, 0, "AAAAAAAAAAAAAAAABB");
  EXPECT_EQ(firstScreen(), R"({"drawn":["AAAAAAAAAAAAAAAA"],"text":["AAAAAAAAAAAAAAAABB"]})");
}

TEST_F(DrawnTextsTest, a_line_outside_of_the_screen_is_not_drawn_or_stands_elsewhere) {
  sendLine(0, 0, "A");
  sendLine(0, 8, "B");
  EXPECT_EQ(firstScreen(), R"({"drawn":["A"],"text":["A","","","","","","","","B"]})");
  // The window's register has eight bits: line 16 begins at row 0 again.
  sendLine(0, 16, "BBB");
  EXPECT_EQ(firstScreen(), R"({"drawn":["BBB"],"text":["A","","","","","","","","B","","","","","","","","BBB"]})");
}

TEST_F(DrawnTextsTest, a_part_of_a_line_stands_in_its_column) {
  sendLine(0, 3, "AAAA");
  sendPart(0, 3, 1, "BW");
  sendPart(0, 4, 14, "AA");
  EXPECT_EQ(firstScreen(), R"({"drawn":["","","","ABWA","              AA"],)"
                           R"("text":["","","","ABWA","              AA"]})");
}

TEST_F(DrawnTextsTest, a_part_that_reaches_over_the_edge_is_unreadable) {
  // Its rows are longer than those of the window, which goes one row into the line below.
  sendPart(0, 4, 14, "AAA");
  EXPECT_EQ(firstScreen(),
            "{\"drawn\":[\"\",\"\",\"\",\"\",\"              \uFFFD\uFFFD\",\"              \uFFFD\uFFFD\"],"
            R"("text":["","","","","              AAA"]})");
}

TEST_F(DrawnTextsTest, a_picture_over_a_text_makes_it_unreadable) {
  sendLine(0, 0, "ABA");
  // A picture of two pixels, red and blue, in the second cell.
  sendMessages("00000052 00000013 00000000 00000009 00000005 0000003e"
               "424d 3e000000 00000000 36000000 28000000 02000000 01000000 0100 1800 00000000 08000000"
               "00000000 00000000 00000000 00000000 0000ff ff0000 0000");
  EXPECT_EQ(firstScreen(), "{\"drawn\":[\"A\uFFFDA\"],\"text\":[\"ABA\"]}");
}

TEST_F(DrawnTextsTest, a_character_that_the_font_has_not_is_read_as_what_stands_for_it) {
  const QByteArray missing("\x80");
  sendLine(0, 0, missing + "A");
  EXPECT_EQ(firstScreen(), "{\"drawn\":[\" A\"],\"text\":[\"\u0080A\"]}") << "a blank, in this font";
  clear();
  useFont(6, 13);
  sendLine(0, 0, missing + "A");
  EXPECT_EQ(firstScreen(), "{\"drawn\":[\"\uFFFDA\"],\"text\":[\"\u0080A\"]}") << "a frame that is no character";
}

TEST_F(DrawnTextsTest, a_cleared_screen_has_no_text) {
  sendLine(0, 0, "A");
  clear();
  EXPECT_EQ(firstScreen(), R"({"drawn":[],"text":[]})");
}

TEST_F(DrawnTextsTest, texts_are_read_with_the_font_in_use) {
  sendLine(0, 0, "A");
  EXPECT_EQ(firstScreen(), R"({"drawn":["A"],"text":["A"]})");
  useFont(6, 13);
  sendLine(0, 4, "AB");
  // The larger A reaches into two columns and two lines of the new font.
  EXPECT_EQ(firstScreen(), "{\"drawn\":[\"\uFFFD\uFFFD\",\"\uFFFD\uFFFD\",\"\",\"\",\"AB\"],"
                           "\"text\":[\"A\",\"\",\"\",\"\",\"AB\"]}");
  EXPECT_EQ(state()[QLatin1String("font")][QLatin1String("height")].toInt(), 13);
}

TEST_F(DrawnTextsTest, without_a_font_nothing_is_drawn_and_nothing_is_read) {
  const QString fonts = QString::fromStdString(root.paths().font_directory);
  ASSERT_TRUE(QFile::remove(fonts));
  test::write_file(fonts + QStringLiteral("/9x9.pcf.gz"), "no font");
  useFont(9, 9);
  sendLine(0, 0, "A");
  EXPECT_EQ(firstScreen(), R"({"drawn":null,"text":["A"]})");
  EXPECT_EQ(state()[QLatin1String("font")].toObject(),
            QJsonDocument::fromJson(R"({"width":null,"height":null,"fault":"no font is loaded"})").object());
}

} // namespace
} // namespace buttondriver::simulator
