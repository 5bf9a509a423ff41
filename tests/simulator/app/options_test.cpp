// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/options.h"

#include "protocol/framing.h"

#include <gtest/gtest.h>

namespace buttondriver::simulator {
namespace {

std::variant<Options, Answer> result_of(const QStringList &arguments) {
  return read_options(QStringList(QStringLiteral("buttondriver-sim")) + arguments);
}

Options options_of(const QStringList &arguments) {
  const auto result = result_of(arguments);
  const auto *options = std::get_if<Options>(&result);
  EXPECT_NE(options, nullptr) << arguments.join(QLatin1Char(' ')).toStdString();
  return options ? *options : Options();
}

TEST(OptionsTest, without_any_there_are_defaults) {
  const Options options = options_of({});
  EXPECT_EQ(options.simulation.font, QString());
  EXPECT_EQ(options.simulation.intensity_percent, 100);
  EXPECT_EQ(options.notices, Notices::usual);
  EXPECT_EQ(options.log_file, QString());
  EXPECT_EQ(options.ports_file, QString());
  EXPECT_FALSE(options.until_input_ends);
  EXPECT_EQ(options.simulation.daemon_arguments, QStringList({"buttondriver-sim", "no-map-file"}));
}

TEST(OptionsTest, have_their_values) {
  const Options options = options_of({"--font", "10x20", "--intensity", "0", "--verbose", "--log", "a.log",
                                      "--ports-file", "ports", "--record", "r", "--snapshot", "s"});
  EXPECT_EQ(options.simulation.font, QStringLiteral("10x20"));
  EXPECT_EQ(options.simulation.intensity_percent, 0);
  EXPECT_EQ(options.notices, Notices::all);
  EXPECT_EQ(options.log_file, QStringLiteral("a.log"));
  EXPECT_EQ(options.ports_file, QStringLiteral("ports"));
  EXPECT_EQ(options.simulation.record_file, QStringLiteral("r"));
  EXPECT_EQ(options.simulation.snapshot_file, QStringLiteral("s"));
  EXPECT_TRUE(options_of({"--until-input-ends"}).until_input_ends);
  EXPECT_EQ(options_of({"--quiet"}).notices, Notices::faults);
  EXPECT_EQ(options_of({"--device", "d", "--font", "a/font.pcf"}).simulation.font, QStringLiteral("a/font.pcf"));
}

TEST(OptionsTest, a_port_is_the_daemons_third_argument) {
  struct Row {
    QStringList arguments;
    QStringList daemon_arguments;
  };
  const Row rows[] = {
      {{"--port", "0"}, {"buttondriver-sim", "no-map-file", "", "0"}},
      {{"--port", "65535", "map"}, {"buttondriver-sim", "map", "", "65535"}},
      {{"map", "v4", "--port", "80"}, {"buttondriver-sim", "map", "v4", "80"}},
      {{"map", "v4", "80"}, {"buttondriver-sim", "map", "v4", "80"}},
  };
  for (const Row &row : rows)
    EXPECT_EQ(options_of(row.arguments).simulation.daemon_arguments, row.daemon_arguments)
        << row.arguments.join(QLatin1Char(' ')).toStdString();
}

TEST(OptionsTest, bad_ones_are_refused_with_the_reason) {
  const char *for_a_daemon =
      "--root, --port, --intensity, MAP, ADDRESS and PORT are for a daemon, and with --device there is none";
  struct Row {
    QStringList arguments;
    const char *text;
  };
  const Row rows[] = {
      {{"--font", "10"}, "--font takes the size of a font, WIDTHxHEIGHT, not '10'"},
      {{"--font", "a.pcf"}, "--font takes the size of a font, WIDTHxHEIGHT, not 'a.pcf'"},
      {{"--font", "0x16"}, "--font takes the size of a font, WIDTHxHEIGHT, not '0x16'"},
      {{"--port", "65536"}, "--port takes a number from 0 to 65535, not '65536'"},
      {{"--port", "-1"}, "--port takes a number from 0 to 65535, not '-1'"},
      {{"--port", "http"}, "--port takes a number from 0 to 65535, not 'http'"},
      {{"--port", "1", "map", "", "2"}, "use only one of --port and PORT"},
      {{"--intensity", "101"}, "--intensity takes a number from 0 to 100, not '101'"},
      {{"--intensity", "half"}, "--intensity takes a number from 0 to 100, not 'half'"},
      {{"--ports-file", ""}, "--ports-file takes the name of a file"},
      {{"--log", ""}, "--log takes the name of a file"},
      {{"--device", "d", "--font", ""}, "--font takes the size or the file of a font"},
      {{"--quiet", "--verbose"}, "use only one of --quiet and --verbose"},
      {{"--device", "d", "--port", "1"}, for_a_daemon},
      {{"--device", "d", "--intensity", "1"}, for_a_daemon},
  };
  for (const Row &row : rows) {
    const auto result = result_of(row.arguments);
    const auto *answer = std::get_if<Answer>(&result);
    ASSERT_NE(answer, nullptr) << row.text;
    EXPECT_EQ(answer->exit_status, 2) << row.text;
    EXPECT_EQ(answer->text.toStdString(), row.text);
  }
}

TEST(OptionsTest, the_help_has_the_defaults) {
  const auto result = result_of({"--help"});
  const QString help = std::get_if<Answer>(&result)->text.simplified();
  EXPECT_TRUE(help.contains(QStringLiteral("0 for a free one. Default: %1.").arg(DEFAULT_PORT)));
  EXPECT_TRUE(help.contains(QStringLiteral("Default: 127.0.0.1:%1.").arg(HttpEndpoint().port)));
  EXPECT_TRUE(help.contains(QStringLiteral("Default: %1.").arg(SimulationSettings().intensity_percent)));
}

} // namespace
} // namespace buttondriver::simulator
