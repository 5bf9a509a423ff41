// SPDX-License-Identifier: Apache-2.0
// Random commands, given to the daemon on a virtual panel and to a model of it, have to show the same.
//
//   model_test [--sequences=N] [--seed=S]        other sequences than those that the tests always play
//   model_test --gtest_filter='Replay*' --replay=FILE     what a failed test has printed, once more

#include "model/commands/sequence_generator.h"
#include "model/commands/shrinker.h"
#include "model/comparison.h"
#include "support/test_root.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

#include <tuple>

namespace buttondriver::test {
namespace {

constexpr std::uint64_t usual_sequences = 1000;
constexpr std::uint64_t usual_seed = 1;

/// What the command line has after `name`=, empty when it has no such word.
QString argument(const QString &name) {
  for (const QString &word : QCoreApplication::arguments())
    if (word.startsWith(name + u'='))
      return word.mid(name.size() + 1);
  return {};
}

std::uint64_t number_argument(const QString &name, std::uint64_t usual) {
  bool is_number = false;
  const qulonglong number = argument(name).toULongLong(&is_number);
  return is_number ? number : usual;
}

Comparison comparison_with(LossyWire loses = {}) {
  return Comparison(BUTTONDRIVER_FONT_SOURCES, BUTTONDRIVER_TEST_FONTS, std::move(loses));
}

struct Finding {
  std::uint64_t seed;
  Sequence shortest;
  std::string difference;
};

/// The first of the sequences from `seed` on that shows a difference, made as short as it can be.
std::optional<Finding> find_difference(Comparison &comparison, const Mixture &mixture, std::uint64_t seed,
                                       std::uint64_t sequences) {
  for (std::uint64_t i = seed; i < seed + sequences; ++i) {
    const Sequence sequence = random_sequence(mixture, i);
    if (comparison.difference(sequence).empty())
      continue;
    const auto fails = [&](const Sequence &candidate) { return !comparison.difference(candidate).empty(); };
    Sequence shortest = shortest_failing(sequence, fails);
    std::string difference = comparison.difference(shortest);
    return Finding{i, std::move(shortest), std::move(difference)};
  }
  return std::nullopt;
}

//                                             text sub picture black LED indicator font level tick other
constexpr Mixture texts = {"texts", 40, 40, 3, 4, 0, 0, 12, 0, 0, 1};
constexpr Mixture pictures = {"pictures", 3, 5, 60, 5, 0, 0, 1, 0, 0, 1};
constexpr Mixture lamps = {"lamps", 0, 0, 0, 0, 45, 35, 0, 12, 20, 4};
constexpr Mixture everything = {"everything", 20, 20, 15, 5, 12, 12, 6, 6, 8, 8};

/// The sequences of each mixture come in so many tests of the same size, so that none of them takes long.
constexpr std::uint64_t parts = 5;

class RandomCommandsTest : public testing::TestWithParam<std::tuple<Mixture, std::uint64_t>> {};

TEST_P(RandomCommandsTest, show_what_the_model_shows) {
  const auto &[mixture, part] = GetParam();
  const std::uint64_t sequences = number_argument(QStringLiteral("--sequences"), usual_sequences);
  const std::uint64_t seed = number_argument(QStringLiteral("--seed"), usual_seed);
  const std::uint64_t first = part * sequences / parts;
  const std::uint64_t end = (part + 1) * sequences / parts;
  Comparison comparison = comparison_with();
  const auto finding = find_difference(comparison, mixture, seed + first, end - first);
  if (finding)
    FAIL() << "seed " << finding->seed << ", the shortest that is still different:\n\n"
           << to_text(finding->shortest) << '\n'
           << finding->difference;
}

INSTANTIATE_TEST_SUITE_P(Of, RandomCommandsTest,
                         testing::Combine(testing::Values(texts, pictures, lamps, everything),
                                          testing::Range(std::uint64_t{0}, parts)),
                         [](const auto &row) {
                           return std::get<0>(row.param).name + std::string("_part_") +
                                  std::to_string(std::get<1>(row.param) + 1);
                         });

/// The sequences of a file, with a line "next" between two of them.
std::vector<Sequence> sequences_of(const QByteArray &text) {
  std::vector<Sequence> sequences;
  std::string lines;
  const QList<QByteArray> all_lines = (text + "\nnext").split('\n');
  for (const QByteArray &line : all_lines) {
    if (line.trimmed() != "next") {
      lines += line.toStdString() + '\n';
      continue;
    }
    sequences.push_back(read_sequence(lines));
    lines.clear();
  }
  return sequences;
}

TEST(ReplayTest, shows_what_the_model_shows) {
  const QString file = argument(QStringLiteral("--replay"));
  const QByteArray text = read_file(file.isEmpty() ? QStringLiteral(BUTTONDRIVER_FOUND_COMMANDS) : file);
  Comparison comparison = comparison_with();
  for (const Sequence &sequence : sequences_of(text))
    EXPECT_EQ(comparison.difference(sequence), "") << to_text(sequence);
}

/// A fault between the worker and the panel: one kind of transfer gets lost.
struct LostTransfer {
  const char *name;
  std::uint16_t address;
  std::uint16_t word;
  const Mixture &mixture;
  std::size_t most_commands;
};

std::ostream &operator<<(std::ostream &stream, const LostTransfer &row) { return stream << row.name; }

class LostTransfersTest : public testing::TestWithParam<LostTransfer> {};

TEST_P(LostTransfersTest, are_found_with_few_commands) {
  Comparison comparison = comparison_with([](const panel::TransferRecord &record) {
    return (record.address_low & 0x1FFF) == GetParam().address && record.count == 1 &&
           (record.value & 0xFFFF) == GetParam().word;
  });
  const auto finding = find_difference(comparison, GetParam().mixture, usual_seed, usual_sequences);
  ASSERT_TRUE(finding);
  EXPECT_LE(finding->shortest.size(), GetParam().most_commands) << to_text(finding->shortest) << finding->difference;
}

INSTANTIATE_TEST_SUITE_P(Of, LostTransfersTest,
                         testing::Values(LostTransfer{"columns_of_the_whole_glass", 0xA0F, 0x8304, texts, 2},
                                         LostTransfer{"rows_of_the_whole_glass", 0xA0F, 0x8001, everything, 3},
                                         LostTransfer{"return_to_the_corner", 0xA03, 0x0000, pictures, 1},
                                         LostTransfer{"button_7_on", 0x900, 0x6700, lamps, 1},
                                         LostTransfer{"both_toggles_on", 0x1003, 0x0003, lamps, 2},
                                         LostTransfer{"brightness_at_half", 0x800, 0xDF00, lamps, 2}),
                         [](const auto &row) { return std::string(row.param.name); });

} // namespace
} // namespace buttondriver::test
