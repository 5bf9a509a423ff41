// SPDX-License-Identifier: Apache-2.0
#include "character_display/vacuum.h"

#include "libraries/character_display/character_display_memory.h"
#include "threads/thread_sanitizer.h"

#include <QElapsedTimer>
#include <QMetaMethod>
#include <QTimer>

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <future>
#include <memory>

namespace buttondriver {
namespace {

using simulator::CharacterDisplayMemory;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::chrono::seconds limit(20);
/// The home character and 40 more, four stores each.
constexpr std::size_t stores_of_a_text = 164;
const std::string blank_line(20, ' ');

RegisterStore into(CharacterDisplayMemory &memory) {
  return [&memory](volatile std::uint32_t *address, std::uint32_t word) { memory.store(address, word); };
}

std::vector<std::uint32_t> words_of(const CharacterDisplayMemory &memory) {
  std::vector<std::uint32_t> words;
  for (const CharacterDisplayMemory::Store &store : memory.stores()) {
    EXPECT_EQ(store.offset, 0x8054);
    words.push_back(store.word);
  }
  return words;
}

struct StrobeRow {
  int channel;
  char16_t character;
  std::array<std::uint32_t, 4> words;
};

TEST(VacuumWriterTest, pulses_the_strobe_of_the_channel_with_four_stores) {
  const StrobeRow rows[] = {
      {0, u'A', {0x01000141, 0x01000041, 0x01000041, 0x01000141}},
      {1, u'A', {0x01410100, 0x00410100, 0x00410100, 0x01410100}},
      {0, u'\v', {0x0100010B, 0x0100000B, 0x0100000B, 0x0100010B}},
      {1, u'\v', {0x010B0100, 0x000B0100, 0x000B0100, 0x010B0100}},
      // The low eight bits decide.
      {255, u'z', {0x017A0100, 0x007A0100, 0x007A0100, 0x017A0100}},
      {-1, u'z', {0x017A0100, 0x007A0100, 0x007A0100, 0x017A0100}},
      {256, u'z', {0x0100017A, 0x0100007A, 0x0100007A, 0x0100017A}},
      {-256, u'z', {0x0100017A, 0x0100007A, 0x0100007A, 0x0100017A}},
      // Eight bits without a sign; what they cannot hold is a question mark.
      {0, u'\u00E9', {0x010001E9, 0x010000E9, 0x010000E9, 0x010001E9}},
      {1, u'\u00FF', {0x01FF0100, 0x00FF0100, 0x00FF0100, 0x01FF0100}},
      {0, u'\u20AC', {0x0100013F, 0x0100003F, 0x0100003F, 0x0100013F}},
      {0, u'\0', {0x01000100, 0x01000000, 0x01000000, 0x01000100}},
  };
  for (const StrobeRow &row : rows) {
    CharacterDisplayMemory memory;
    VacuumWriter writer(memory.registerBase(), into(memory));
    writer.text(row.channel, QString(QChar(row.character)));
    EXPECT_THAT(words_of(memory), testing::ElementsAreArray(row.words)) << "channel " << row.channel;
  }
}

TEST(VacuumWriterTest, takes_a_millisecond_for_each_character) {
  CharacterDisplayMemory memory;
  VacuumWriter writer(memory.registerBase(), into(memory));
  QElapsedTimer timer;
  timer.start();
  writer.text(0, QString(40, QLatin1Char('x')));
  EXPECT_GE(timer.elapsed(), 40);
  EXPECT_EQ(memory.stores().size(), 160U);
}

TEST(VacuumWriterTest, stores_in_plain_memory_unless_told_otherwise) {
  CharacterDisplayMemory memory;
  VacuumWriter writer(memory.registerBase());
  writer.text(0, QStringLiteral("xA"));
  EXPECT_EQ(memory.wordAt(0x8054), 0x01000141U);
  EXPECT_EQ(memory.wordAt(0x8050), 0U);
  writer.text(1, QStringLiteral("A"));
  EXPECT_EQ(memory.wordAt(0x8054), 0x01410100U);
}

TEST(VacuumWriterTest, writes_nothing_for_no_text) {
  CharacterDisplayMemory memory;
  VacuumWriter(memory.registerBase(), into(memory)).text(0, QString());
  EXPECT_THAT(memory.stores(), IsEmpty());
}

TEST(VacuumWriterTest, as_a_thread_ends_at_once_and_writes_nothing) {
  CharacterDisplayMemory memory;
  VacuumWriter writer(memory.registerBase(), into(memory));
  writer.start();
  EXPECT_TRUE(writer.wait(20'000));
  EXPECT_THAT(memory.stores(), IsEmpty());
}

using Emission = std::pair<int, std::string>;

/// Collects what a Vacuum emits.
class VacuumTest : public testing::Test {
protected:
  void collect(Vacuum &vacuum) {
    QObject::connect(&vacuum, &Vacuum::text_signal,
                     [this](int channel, const QString &text) { _emitted.emplace_back(channel, text.toStdString()); });
  }

  CharacterDisplayMemory _memory;
  std::vector<Emission> _emitted;
};

struct TextRow {
  const char *what;
  QString text;
  std::string line_1;
  std::string line_2;
};

TEST_F(VacuumTest, shows_two_lines_of_twenty_characters) {
  const TextRow rows[] = {
      {"two lines", "Volume\n12", "Volume              ", "12                  "},
      {"one line", "Volume", "Volume              ", blank_line},
      {"25 characters", "abcdefghijklmnopqrstuvwxy\nABCDEFGHIJKLMNOPQRSTUVWXY", "abcdefghijklmnopqrst",
       "ABCDEFGHIJKLMNOPQRST"},
      {"20 characters", "abcdefghijklmnopqrst", "abcdefghijklmnopqrst", blank_line},
      {"empty first line", "\nsecond", blank_line, "second              "},
      {"third line", "a\nb\nc\n", "a                   ", "b                   "},
      {"nothing", QString(), blank_line, blank_line},
      {"carriage return", "a\r\nb", "a\r                  ", "b                   "},
  };
  for (const TextRow &row : rows) {
    CharacterDisplayMemory memory;
    Vacuum vacuum(nullptr, memory.registerBase(), into(memory));
    _emitted.clear();
    collect(vacuum);
    vacuum.setText(3, row.text);
    EXPECT_THAT(_emitted, ElementsAre(Emission(3, "\v"), Emission(3, row.line_1 + row.line_2))) << row.what;
    ASSERT_TRUE(memory.waitForStores(stores_of_a_text, limit)) << row.what;
    EXPECT_EQ(memory.line(1, 0), row.line_1) << row.what;
    EXPECT_EQ(memory.line(1, 1), row.line_2) << row.what;
    EXPECT_EQ(memory.line(0, 0), blank_line) << row.what;
  }
}

TEST_F(VacuumTest, the_first_text_starts_the_thread_and_goes_home_first) {
  Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  EXPECT_FALSE(vacuum.isRunning());
  vacuum.setText(0, QStringLiteral("Hi"));
  EXPECT_TRUE(vacuum.isRunning());
  EXPECT_EQ(vacuum.priority(), QThread::HighestPriority);
  ASSERT_TRUE(_memory.waitForStores(stores_of_a_text, limit));
  const std::vector<std::uint32_t> words = words_of(_memory);
  const std::vector<std::uint32_t> start(words.begin(), words.begin() + 12);
  EXPECT_THAT(start, ElementsAre(0x0100010B, 0x0100000B, 0x0100000B, 0x0100010B, 0x01000148, 0x01000048, 0x01000048,
                                 0x01000148, 0x01000169, 0x01000069, 0x01000069, 0x01000169));
  EXPECT_EQ(words.size(), stores_of_a_text);
}

TEST_F(VacuumTest, emits_nothing_for_the_same_text_again) {
  Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  vacuum.setText(0, QStringLiteral("same"));
  collect(vacuum);
  vacuum.setText(0, QStringLiteral("same"));
  vacuum.setText(0, QStringLiteral("same   \n  "));
  vacuum.setText(1, QStringLiteral("same"));
  EXPECT_THAT(_emitted, IsEmpty());
  vacuum.setText(1, QStringLiteral("other"));
  vacuum.setText(1, QStringLiteral("same"));
  EXPECT_EQ(_emitted.size(), 4U);
}

TEST_F(VacuumTest, the_caller_does_not_wait_for_the_display) {
  std::promise<void> gate;
  const std::shared_future<void> opened = gate.get_future().share();
  Vacuum vacuum(nullptr, _memory.registerBase(), [this, opened](volatile std::uint32_t *address, std::uint32_t word) {
    opened.wait();
    _memory.store(address, word);
  });
  for (int i = 0; i <= 10; ++i)
    vacuum.setText(0, QString::number(i));
  EXPECT_THAT(_memory.stores(), IsEmpty());
  gate.set_value();
  ASSERT_TRUE(_memory.waitForStores(11 * stores_of_a_text, limit));
  EXPECT_EQ(_memory.line(0, 0), "10                  ");
}

/// A thread that has started, but gets no processor until it is let go.
class HeldVacuum : public Vacuum {
public:
  using Vacuum::Vacuum;
  void letGo() { _gate.set_value(); }

protected:
  void run() override {
    _opened.wait();
    Vacuum::run();
  }

private:
  std::promise<void> _gate;
  std::shared_future<void> _opened = _gate.get_future().share();
};

TEST_F(VacuumTest, loses_no_text_while_the_thread_is_slow_to_start) {
  HeldVacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  const std::future<void> caller = std::async(std::launch::async, [&] {
    vacuum.setText(0, QStringLiteral("first"));
    vacuum.setText(1, QStringLiteral("second"));
  });
  // Longer than the caller waits in one go; ends at once if it gives up.
  EXPECT_EQ(caller.wait_for(std::chrono::milliseconds(300)), std::future_status::timeout);
  vacuum.letGo();
  ASSERT_TRUE(_memory.waitForStores(2 * stores_of_a_text, limit));
  EXPECT_EQ(_memory.line(0, 0), "first               ");
  EXPECT_EQ(_memory.line(1, 0), "second              ");
}

/// A thread that ends without ever having had a writer.
class EndingVacuum : public Vacuum {
public:
  using Vacuum::Vacuum;

protected:
  void run() override { thread_sanitizer::happens_before(static_cast<Vacuum *>(this)); }
};

TEST_F(VacuumTest, a_thread_that_ends_without_a_writer_holds_nobody_up) {
  EndingVacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  vacuum.setText(0, QStringLiteral("first"));
  vacuum.setText(0, QStringLiteral("second"));
  EXPECT_THAT(_memory.stores(), IsEmpty());
}

TEST_F(VacuumTest, the_first_text_gives_the_thread_200_milliseconds) {
  Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  QElapsedTimer timer;
  timer.start();
  vacuum.setText(0, QStringLiteral("first"));
  EXPECT_GE(timer.elapsed(), 200);
}

TEST_F(VacuumTest, writes_nothing_after_its_event_loop_has_ended) {
  std::promise<void> held;
  std::promise<void> gate;
  QTimer guest;
  Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  vacuum.setText(0, QStringLiteral("first"));
  ASSERT_TRUE(_memory.waitForStores(stores_of_a_text, limit));
  // Holds the event loop where it has sent all that was posted to the writer, and looks whether to go on afterwards.
  guest.setSingleShot(true);
  QObject::connect(&guest, &QTimer::timeout, &guest, [&held, opened = gate.get_future().share()] {
    held.set_value();
    opened.wait();
  });
  guest.moveToThread(&vacuum);
  QMetaObject::invokeMethod(&guest, "start", Qt::QueuedConnection, Q_ARG(int, 1));
  held.get_future().wait();
  vacuum.setText(0, QStringLiteral("second"));
  vacuum.quit();
  gate.set_value();
  ASSERT_TRUE(vacuum.wait());
  EXPECT_EQ(_memory.stores().size(), stores_of_a_text);
}

TEST_F(VacuumTest, its_end_lets_the_text_that_is_being_written_come_to_its_end) {
  {
    Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
    vacuum.setText(0, QStringLiteral("text"));
    // The home character and one more: the writer is at the text.
    ASSERT_TRUE(_memory.waitForStores(8, limit));
  }
  EXPECT_EQ(_memory.stores().size(), stores_of_a_text);
}

TEST_F(VacuumTest, its_end_without_any_text_is_silent) {
  { const Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory)); }
  EXPECT_THAT(_memory.stores(), IsEmpty());
}

TEST_F(VacuumTest, starts_again_after_it_was_ended) {
  Vacuum vacuum(nullptr, _memory.registerBase(), into(_memory));
  vacuum.setText(0, QStringLiteral("first"));
  ASSERT_TRUE(_memory.waitForStores(stores_of_a_text, limit));
  vacuum.quit();
  ASSERT_TRUE(vacuum.wait());
  vacuum.setText(0, QStringLiteral("second"));
  ASSERT_TRUE(_memory.waitForStores(2 * stores_of_a_text, limit));
  EXPECT_EQ(_memory.line(0, 0), "second              ");
}

TEST_F(VacuumTest, belongs_to_its_parent) {
  auto parent = std::make_unique<QObject>();
  auto *vacuum = new Vacuum(parent.get(), _memory.registerBase(), into(_memory));
  bool is_gone = false;
  QObject::connect(vacuum, &QObject::destroyed, [&is_gone] { is_gone = true; });
  vacuum->setText(0, QStringLiteral("text"));
  parent.reset();
  EXPECT_TRUE(is_gone);
}

TEST_F(VacuumTest, its_signal_and_the_writers_slot_have_their_names) {
  EXPECT_GE(Vacuum::staticMetaObject.indexOfSignal("text_signal(int,QString)"), 0);
  EXPECT_GE(VacuumWriter::staticMetaObject.indexOfSlot("text(int,QString)"), 0);
}

} // namespace
} // namespace buttondriver
