// SPDX-License-Identifier: Apache-2.0
#include "bridge/configuration/configuration_file.h"
#include "bridge/configuration/ini_file.h"

#include "support/temporary_folder.h"

#include <QStringList>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string>
#include <sys/stat.h>

namespace buttondriver::bridge {
namespace {

using std::filesystem::permissions;
using std::filesystem::perms;

struct Row {
  const char *text;
  const char *problems; ///< without the name of the file in front; FOLDER for its folder
};

std::ostream &operator<<(std::ostream &stream, const Row &row) { return stream << row.text; }

std::string replaced(std::string text, const std::string &from, const std::string &to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
    text.replace(at, from.size(), to);
  return text;
}

/// What is wrong with `text`, in a folder with a file "open" for everybody and a file "secret".
std::string problems_of(const QByteArray &text) {
  const test::TemporaryFolder folder;
  permissions(folder.write("open", "a\n"), perms::owner_read | perms::owner_write | perms::others_read);
  permissions(folder.write("secret", "a\n"), perms::owner_read | perms::owner_write | perms::group_read);
  permissions(folder.write("empty", "\n"), perms::owner_read);
  permissions(folder.write("nul", std::string("a\0b\n", 4)), perms::owner_read);
  permissions(folder.write("executable", "a\n"), perms::owner_read | perms::others_exec);
  permissions(folder.write("long", std::string(4096, 'a')), perms::owner_read);
  ::mkfifo(folder.path("pipe").c_str(), 0600);
  const std::string file = folder.path("mqtt.ini");
  const auto read = read_configuration(text, QString::fromStdString(file));
  const std::string problems = read ? "" : read.failure().text.toStdString();
  return replaced(replaced(problems, file + ":", ""), folder.path("x").substr(0, folder.path("x").size() - 2),
                  "FOLDER");
}

class ConfigurationProblemsTest : public testing::TestWithParam<Row> {};

TEST_P(ConfigurationProblemsTest, are_told_with_their_lines) {
  EXPECT_EQ(problems_of(GetParam().text), GetParam().problems);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, ConfigurationProblemsTest,
    testing::Values(
        Row{"name = 1\n", "1: \"name\" stands before the first section"},
        Row{"[bridge]\nname\n", "2: neither \"key = value\" nor a section nor a comment"},
        Row{"[bridge]\n= 1\n", "2: neither \"key = value\" nor a section nor a comment"},
        Row{"[bridge]\nname =\n", "2: \"name\" has no value"}, Row{"[bridge\n", "1: a section is written [name]"},
        Row{"[]\nname = 1\n", "1: a section is written [name]"}, Row{"[]\nname =\n", "1: a section is written [name]"},
        Row{"[bridges]\n", "1: there is no section \"bridges\""},
        Row{"[bridges]\nname = 1\n", "1: there is no section \"bridges\""},
        Row{"[bridge]\n[broker]\n[bridge]\n", "3: section \"bridge\" for the second time, after line 1"},
        Row{"[bridge]\nnames = 1\n", "2: there is no key \"names\" in [bridge]"},
        Row{"[broker]\nName = 1\n", "2: there is no key \"Name\" in [broker]"},
        Row{"[bridge]\nname = 1\n\nname = 2\n", "4: \"name\" for the second time, after line 2"},
        Row{"[panels]\na = b\na = c\n", "3: \"a\" for the second time, after line 2"},
        Row{"[groups]\n%1 = a\n%1 = a\n[panels]\na = b\n",
            "2: \"%1\": a name has 1 to 64 letters, digits, \"_\", \".\" and \"-\"\n"
            "3: \"%1\" for the second time, after line 2"},
        Row{"[%2%1]\n[%2%1]\n",
            "1: there is no section \"%2%1\"\n2: section \"%2%1\" for the second time, after line 1"},
        Row{"[bridge]\nname = a\x01\n", "2: a control character"},
        Row{"[bridge]\na\tb = 1\n", "2: there is no key \"a?b\" in [bridge]"},
        Row{"[bridge]\n\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4"
            "\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4 = 1\n",
            "2: there is no key "
            "\"\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4"
            "\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\u00E4\" in "
            "[bridge]"},
        Row{"[bridge]\na\u200Bb = 1\n", "2: there is no key \"a?b\" in [bridge]"},
        Row{"[panels]\na = b:0\n[groups]\ng = a\n",
            "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"b:0\""},
        Row{"[bridge]\n"
            "key-of-70-characters-or-so-that-nobody-would-want-to-read-to-its-end-1 = 1\n",
            "2: there is no key \"key-of-70-characters-or-so-that-nobody-would-want-to-read-to...\" in [bridge]"}));

INSTANTIATE_TEST_SUITE_P(
    Values, ConfigurationProblemsTest,
    testing::Values(
        Row{"[bridge]\nname = a b\n", "2: \"a b\": a name has 1 to 64 letters, digits, \"_\", \".\" and \"-\""},
        Row{"[bridge]\nprefix = a/#\n", "2: \"a/#\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nprefix = +\n", "2: \"+\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nprefix = /a\n", "2: \"/a\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nprefix = a/\n", "2: \"a/\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nprefix = a//b\n", "2: \"a//b\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nprefix = \xFF\n", "2: \"\uFFFD\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nprefix = $SYS\n", "2: \"$SYS\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\ndiscovery_prefix = #\n", "2: \"#\" cannot stand at the beginning of a topic"},
        Row{"[bridge]\nshare = 0/3\n", "2: share is written 1/3, up to 1000/1000, not \"0/3\""},
        Row{"[bridge]\nshare = 4/3\n", "2: share is written 1/3, up to 1000/1000, not \"4/3\""},
        Row{"[bridge]\nshare = 1\n", "2: share is written 1/3, up to 1000/1000, not \"1\""},
        Row{"[bridge]\nshare = 1/1001\n", "2: share is written 1/3, up to 1000/1000, not \"1/1001\""},
        Row{"[bridge]\nstatistics = -1\n", "2: statistics is a number of 0 to 86400, not \"-1\""},
        Row{"[bridge]\nstatistics = 86401\n", "2: statistics is a number of 0 to 86400, not \"86401\""},
        Row{"[bridge]\nstatistics = 99999999999999999999\n",
            "2: statistics is a number of 0 to 86400, not \"99999999999999999999\""},
        Row{"[bridge]\nstatistics = 4294967296\n", "2: statistics is a number of 0 to 86400, not \"4294967296\""},
        Row{"[bridge]\nstatistics = +5\n", "2: statistics is a number of 0 to 86400, not \"+5\""},
        Row{"[bridge]\nmetrics_port = 65536\n", "2: metrics_port is a number of 0 to 65535, not \"65536\""},
        Row{"[bridge]\ndiscovery = yes\n", "2: discovery is on or off, not \"yes\""},
        Row{"[broker]\nhost = a b\n", "2: \"a b\" is not the name or address of a host"},
        Row{"[broker]\nhost = 192.0.2.7:1\n", "2: \"192.0.2.7:1\" is not the name or address of a host"},
        Row{"[broker]\nhost = a:1\n", "2: \"a:1\" is not the name or address of a host"},
        Row{"[broker]\nport = 0\n", "2: port is a number of 1 to 65535, not \"0\""},
        Row{"[broker]\nprotocol = 3\n", "2: protocol is 5 or 3.1.1, not \"3\""},
        Row{"[broker]\nuser = \xFF\n", "2: user is not written in UTF-8"},
        Row{"[broker]\nkeep_alive = 4\n", "2: keep_alive is a number of 5 to 65535, not \"4\""},
        Row{"[panels]\ngroup = a\n", "2: no panel can have the name \"group\", which topics need"},
        Row{"[panels]\nbridge = a\n", "2: no panel can have the name \"bridge\", which topics need"},
        Row{"[panels]\na/b = c\n", "2: \"a/b\": a name has 1 to 64 letters, digits, \"_\", \".\" and \"-\""},
        Row{"[panels]\na = b:0\n", "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"b:0\""},
        Row{"[panels]\na = ::1\n", "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"::1\""},
        Row{"[panels]\na = [::1\n", "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"[::1\""},
        Row{"[panels]\na = [b]\n", "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"[b]\""},
        Row{"[panels]\na = b c\n", "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"b c\""},
        Row{"[panels]\nhall = 192.0.2.7\nyard = 192.0.2.7:3003\n",
            "3: \"192.0.2.7:3003\" is the address of panel \"hall\" already"},
        Row{"[panels]\nhall = Panel.example\nyard = panel.EXAMPLE\ngate = panel.example:3004\n",
            "3: \"panel.EXAMPLE\" is the address of panel \"hall\" already"},
        Row{"[panels]\na = b:0\nc = b:0\nd = e\nf = e\n",
            "2: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"b:0\"\n"
            "3: a panel's address is HOST, HOST:PORT, or [IPV6-ADDRESS]:PORT, not \"b:0\"\n"
            "5: \"e\" is the address of panel \"d\" already"},
        Row{"[groups]\na b = c\n[panels]\nc = d\n",
            "2: \"a b\": a name has 1 to 64 letters, digits, \"_\", \".\" and \"-\""},
        Row{"[groups]\na = b, c\n[panels]\nb = d\n", "2: there is no panel \"c\""},
        Row{"[groups]\na = b,\n[panels]\nb = d\n", "2: there is no panel \"\""},
        Row{"[groups]\na = b, b\n[panels]\nb = d\n", "2: panel \"b\" for the second time"}));

// No line is told. Where one is wrong, only that is told: it may be why there is no panel.
INSTANTIATE_TEST_SUITE_P(Panels, ConfigurationProblemsTest,
                         testing::Values(Row{"", " no panel stands in [panels]"},
                                         Row{"# all\n[bridge]\nname = a\n[panels]\n", " no panel stands in [panels]"},
                                         Row{"[panel]\na = b\n", "1: there is no section \"panel\""}));

INSTANTIATE_TEST_SUITE_P(
    Files, ConfigurationProblemsTest,
    testing::Values(
        Row{"[broker]\nuser = a\npassword_file = absent\n", "3: FOLDER/absent: No such file or directory"},
        Row{"[broker]\nuser = a\npassword_file = pipe\n", "3: FOLDER/pipe: not a regular file"},
        Row{"[broker]\nuser = a\npassword_file = open\n", "3: FOLDER/open is open to everybody: chmod o= FOLDER/open"},
        Row{"[broker]\nuser = a\npassword_file = executable\n",
            "3: FOLDER/executable is open to everybody: chmod o= FOLDER/executable"},
        Row{"[broker]\nuser = a\npassword_file = nul\n", "3: FOLDER/nul: its first line is not a password"},
        Row{"[broker]\nuser = a\npassword_file = /proc/self/mem\n", "3: /proc/self/mem: Input/output error"},
        Row{"[broker]\nuser = a\npassword_file = empty\n", "3: FOLDER/empty: its first line is not a password"},
        Row{"[broker]\nuser = a\npassword_file = long\n", "3: FOLDER/long: its first line is too long for a password"},
        Row{"[broker]\npassword_file = secret\n", "2: password_file is of no use without user"},
        Row{"[broker]\nca_file = open\n", "2: ca_file is of no use without tls = on"},
        Row{"[broker]\ncert_file = open\nkey_file = secret\n",
            "2: cert_file is of no use without tls = on\n3: key_file is of no use without tls = on"},
        Row{"[broker]\ntls = on\nca_file = pipe\n", "3: FOLDER/pipe: not a regular file"},
        Row{"[broker]\ntls = on\ncert_file = open\n", "3: cert_file is of no use without key_file"},
        Row{"[broker]\ntls = on\nkey_file = secret\n", "3: key_file is of no use without cert_file"},
        Row{"[broker]\ntls = on\nkey_file = open\ncert_file = open\n",
            "3: FOLDER/open is open to everybody: chmod o= FOLDER/open"}));

INSTANTIATE_TEST_SUITE_P(All, ConfigurationProblemsTest,
                         testing::Values(Row{"[groups]\na = b\n[broker]\nport = x\nca_file = open\n\n[other]\n",
                                             "2: there is no panel \"b\"\n"
                                             "4: port is a number of 1 to 65535, not \"x\"\n"
                                             "5: ca_file is of no use without tls = on\n"
                                             "7: there is no section \"other\""}));

TEST(ConfigurationBoundsTest, are_told_up_to_a_bound) {
  const std::string problems = problems_of("[bridge]\n" + QByteArray("?\n").repeated(2000));
  EXPECT_EQ(std::count(problems.begin(), problems.end(), '\n'), 50);
  EXPECT_THAT(problems, testing::EndsWith("\n and 1950 more"));
}

TEST(ConfigurationBoundsTest, have_the_name_of_the_file_as_it_is) {
  const QString file = QStringLiteral("/100%1%2%3%4/mqtt.ini");
  const auto read = read_configuration("[bridge]\n" + QByteArray("?\n").repeated(51), file);
  ASSERT_FALSE(read);
  const QStringList lines = read.failure().text.split(QLatin1Char('\n'));
  ASSERT_EQ(lines.size(), 51);
  EXPECT_EQ(lines.first(), file + QStringLiteral(":2: neither \"key = value\" nor a section nor a comment"));
  EXPECT_EQ(lines.last(), file + QStringLiteral(": and 1 more"));
}

TEST(ConfigurationBoundsTest, of_one_line_are_told_in_their_order) {
  QByteArray group;
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    group += (i == 0 ? "" : ",") + QByteArray::number(i);
    expected += (i == 0 ? "" : "\n") + ("2: there is no panel \"" + std::to_string(i)) + "\"";
  }
  EXPECT_EQ(problems_of("[groups]\na = " + group), expected);
}

TEST(ConfigurationBoundsTest, of_names_and_numbers_are_where_they_are_said_to_be) {
  struct Bound {
    QByteArray before;
    QByteArray longest;
    QByteArray after;
  };
  const Bound bounds[] = {
      {"[bridge]\nname = ", QByteArray(64, 'n'), "n"},
      {"[bridge]\nprefix = ", QByteArray(1000, 'p'), "p"},
      {"[bridge]\ndiscovery_prefix = ", QByteArray(1000, 'p'), "p"},
      {"[broker]\nhost = ", QByteArray(253, 'h'), "h"},
      {"[panels]\na = ", QByteArray(253, 'h'), "h"},
      {"[panels]\na = b:", "65535", "0"},
      {"[bridge]\nshare = ", "1000/1000", "0"},
      {"[bridge]\nshare = ", "999/1000", "0"},
      {"[broker]\nkeep_alive = ", "65535", "0"},
  };
  for (const Bound &bound : bounds) {
    const QByteArray panel = bound.before.startsWith("[panels]") ? "" : "\n[panels]\na = b\n";
    EXPECT_EQ(problems_of(bound.before + bound.longest + panel), "") << bound.before.constData();
    EXPECT_THAT(problems_of(bound.before + bound.longest + bound.after), testing::StartsWith("2: "))
        << bound.before.constData();
  }
}

TEST(ConfigurationBoundsTest, a_group_of_very_many_panels_takes_no_long_time) {
  EXPECT_THAT(problems_of("[groups]\na = " + QByteArray("b,").repeated(100'000)), testing::HasSubstr("more"));
}

TEST(ConfigurationBoundsTest, a_file_has_to_be_there_and_not_too_large) {
  const test::TemporaryFolder folder;
  const auto problem = [&](const std::string &name) {
    const auto read = read_configuration_file(QString::fromStdString(folder.path(name)));
    return read ? "" : replaced(read.failure().text.toStdString(), folder.path(name), "FILE");
  };
  EXPECT_EQ(problem("absent"), "FILE: No such file or directory");
  EXPECT_EQ(problem(""), "FILE: not a regular file");
  const std::string panel = "[panels]\na = b\n";
  folder.write("large", panel + std::string(4 * 1024 * 1024 - panel.size(), '#'));
  EXPECT_EQ(problem("large"), "");
  folder.write("larger", panel + std::string(4 * 1024 * 1024 + 1 - panel.size(), '#'));
  EXPECT_EQ(problem("larger"), "FILE: larger than 4 MiB");
}

TEST(ConfigurationBoundsTest, a_file_that_cannot_be_read_is_not_an_empty_one) {
  const auto read = read_configuration_file(QStringLiteral("/proc/self/mem")); // nothing is at its beginning
  ASSERT_FALSE(read);
  EXPECT_EQ(read.failure().text.toStdString(), "/proc/self/mem: Input/output error");
}

TEST(ConfigurationBoundsTest, a_text_that_is_cut_says_so_in_any_encoding) {
  const QString unknown(60, QChar(0xFFFD));
  for (const int bytes : {60, 61, 240, 241, 245, 1000})
    EXPECT_EQ(quoted(QByteArray(bytes, '\xFF')).toStdString(),
              (QLatin1Char('"') + unknown + QLatin1String(bytes > 60 ? "...\"" : "\"")).toStdString())
        << bytes;
}

} // namespace
} // namespace buttondriver::bridge
