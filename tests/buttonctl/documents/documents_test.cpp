// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/command_table.h"
#include "buttonctl/documents/bash_completion.h"
#include "buttonctl/documents/commands_manual.h"
#include "buttonctl/documents/commands_page.h"
#include "buttonctl/documents/zsh_completion.h"
#include "support/first_difference.h"

#include <QFile>

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

using test::first_difference;

constexpr const char *renewal = "make it again: cmake --build build/qt6 --target update_buttonctl_documents";

QString read(const char *name) {
  QFile file(QString::fromUtf8(name));
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
  return QString::fromUtf8(file.readAll());
}

Steps send_nothing(ArgumentReader &) { return {}; }

TEST(CommittedDocumentsTest, the_page_has_the_commands_as_their_rows_are) {
  const QString page = read(BUTTONCTL_PAGE);
  const Outcome<QString> updated = with_commands(page, command_table());
  ASSERT_TRUE(updated) << updated.failure().text.toStdString();
  EXPECT_EQ(first_difference("the page", page.toStdString(), updated->toStdString()), "") << renewal;
}

TEST(CommittedDocumentsTest, the_manual_page_has_the_commands_as_their_rows_are) {
  const QString page = read(BUTTONCTL_MANUAL);
  const Outcome<QString> updated = with_commands_manual(page, command_table());
  ASSERT_TRUE(updated) << updated.failure().text.toStdString();
  EXPECT_EQ(first_difference("the manual page", page.toStdString(), updated->toStdString()), "") << renewal;
  for (const Command &command : command_table())
    EXPECT_TRUE(page.contains(QStringLiteral("\n.SS %1\n").arg(QLatin1String(command.name)))) << command.name;
}

TEST(CommittedDocumentsTest, the_completions_are_what_the_rows_make_of_them) {
  EXPECT_EQ(first_difference("the completion for bash", read(BUTTONCTL_COMPLETIONS "/buttonctl").toStdString(),
                             bash_completion(command_table()).toStdString()),
            "")
      << renewal;
  EXPECT_EQ(first_difference("the completion for zsh", read(BUTTONCTL_COMPLETIONS "/_buttonctl").toStdString(),
                             zsh_completion(command_table()).toStdString()),
            "")
      << renewal;
}

CommandTable waving() {
  return {{"wave",
           "HAND --with FLAG",
           "wave a hand",
           QStringLiteral("HAND is left|right, not *both*.\n\n  like this\n  or so\nAnd on.\n"),
           "buttonctl wave left\n",
           {{"with", "FLAG", "what is <in> it"}, {"s,speed", "X", "1|2"}, {"up", nullptr, "high"}},
           send_nothing}};
}

TEST(CommandsPageTest, tells_all_of_a_row) {
  EXPECT_EQ(commands_section(waving()).toStdString(), "### wave\n"
                                                      "\n"
                                                      "    buttonctl wave HAND --with FLAG [-s X] [--up]\n"
                                                      "\n"
                                                      "Wave a hand.\n"
                                                      "\n"
                                                      "HAND is left|right, not \\*both\\*.\n"
                                                      "\n"
                                                      "<!-- not run: of the help -->\n"
                                                      "```text\n"
                                                      "like this\n"
                                                      "or so\n"
                                                      "```\n"
                                                      "And on.\n"
                                                      "\n"
                                                      "| Option | Meaning |\n"
                                                      "|---|---|\n"
                                                      "| `--with FLAG` | what is \\<in> it |\n"
                                                      "| `-s X`, `--speed X` | 1\\|2 |\n"
                                                      "| `--up` | high |\n"
                                                      "\n"
                                                      "```sh\n"
                                                      "buttonctl wave left\n"
                                                      "```\n"
                                                      "\n");
}

TEST(CommandsManualTest, tells_all_of_a_row) {
  EXPECT_EQ(commands_manual(waving()), ".SS wave\n"
                                       "\\%\\fBbuttonctl wave\\fR \\fIHAND\\fR \\%\\fB\\-\\-with\\fR \\fIFLAG\\fR "
                                       "[\\fB\\-s\\fR \\fIX\\fR] [\\fB\\-\\-up\\fR]\n"
                                       ".PP\n"
                                       "Wave a hand.\n"
                                       ".PP\n"
                                       "\\fIHAND\\fR is left|right, not *both*.\n"
                                       ".PP\n"
                                       ".RS 4\n"
                                       ".EX\n"
                                       "like this\n"
                                       "or so\n"
                                       ".EE\n"
                                       ".RE\n"
                                       ".PP\n"
                                       "And on.\n"
                                       ".TP\n"
                                       "\\fB\\-\\-with\\fR \\fIFLAG\\fR\n"
                                       "what is <in> it\n"
                                       ".TP\n"
                                       "\\fB\\-s\\fR, \\fB\\-\\-speed\\fR \\fIX\\fR\n"
                                       "1|2\n"
                                       ".TP\n"
                                       "\\fB\\-\\-up\\fR\n"
                                       "high\n"
                                       ".PP\n"
                                       ".RS 4\n"
                                       ".EX\n"
                                       "buttonctl wave left\n"
                                       ".EE\n"
                                       ".RE\n");
}

TEST(CommandsPageTest, is_refused_without_its_marks) {
  EXPECT_FALSE(with_commands(QStringLiteral("# buttonctl\n"), {}));
  EXPECT_FALSE(with_commands_manual(QStringLiteral(".SH COMMANDS\n"), {}));
}

TEST(ZshCompletionTest, characters_of_the_rows_have_no_meaning_to_zsh) {
  const CommandTable table = {{"wave",
                               "HAND [A:B]...",
                               "wave a: a 'hand'",
                               QString(),
                               "",
                               {{"s,speed", "HOST[:X]", "it's [fast], \\"}, {"up", nullptr, "$HOME: `high`"}},
                               send_nothing}};
  const std::string text = zsh_completion(table).toStdString();
  for (const char *line :
       {R"(    'wave:wave a: a '\''hand'\''')", R"( '(-s --speed)-s+[it'\''s \[fast\], \\]:HOST[\:X]:_hosts' )",
        R"( '(-s --speed)--speed=[it'\''s \[fast\], \\]:HOST[\:X]:_hosts' )", R"( '--up[$HOME: `high`]' )",
        R"( '1:HAND: ' )", R"( '*:A\:B: ' && ret=0 ;;)"})
    EXPECT_NE(text.find(line), std::string::npos) << line << "\n" << text;
}

} // namespace
} // namespace buttondriver::buttonctl
