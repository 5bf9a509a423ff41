// SPDX-License-Identifier: Apache-2.0
#include "yardsticks/running/lcdd_process.h"

#include "yardsticks/running/waiting.h"

#include <filesystem>
#include <pwd.h>
#include <unistd.h>

namespace buttondriver::yardsticks {

namespace {

const std::string set_text = "widget_set s w 1 1 {0123456789abcdef}\n";

/// The folder of the drivers lies below one that is named after the machine's kind.
std::string drivers_of(const std::string &package) {
  for (const auto &entry : std::filesystem::directory_iterator(package + "/usr/lib"))
    if (std::filesystem::exists(entry.path() / "lcdproc" / "text.so"))
      return (entry.path() / "lcdproc").string() + '/';
  throw std::runtime_error("there are no drivers of LCDd in " + package);
}

/// It would become another user than root, who cannot always read what lies here.
std::string user_name() {
  const passwd *user = ::getpwuid(::getuid());
  return user ? user->pw_name : "nobody";
}

} // namespace

LcddProcess::LcddProcess(const std::string &package) {
  const std::string file = _folder.write(
      "LCDd.conf", "[server]\nDriverPath=" + drivers_of(package) +
                       "\nDriver=text\nBind=127.0.0.1\nPort=0\nReportLevel=1\nReportToSyslog=no\nUser=" + user_name() +
                       "\nForeground=yes\n[text]\nSize=20x4\n");
  _process.emplace(std::vector<std::string>{package + "/usr/sbin/LCDd", "-f", "-c", file}, std::vector<std::string>{});
  _client = std::make_unique<Client>(_process->waitForPort());
  _client->send("hello\n");
  for (std::string greeting; greeting.find('\n') == std::string::npos;)
    greeting += _client->take();
  command("screen_add s\n");
  command("widget_add s w string\n");
}

double LcddProcess::secondsOfEach(int count) {
  std::string commands;
  for (int i = 0; i < count; ++i)
    commands += set_text;
  return seconds_of([&] {
           _client->send(commands);
           waitForAnswers(count);
         }) /
         count;
}

std::vector<double> LcddProcess::replySeconds(int count) {
  std::vector<double> seconds;
  for (int i = 0; i < count; ++i)
    seconds.push_back(seconds_of([&] { command(set_text); }));
  return seconds;
}

void LcddProcess::command(const std::string &line) {
  _client->send(line);
  waitForAnswers(1);
}

/// Between the answers it tells which screen is shown.
void LcddProcess::waitForAnswers(int count) {
  while (count > 0) {
    _unfinished_line += _client->take();
    std::size_t start = 0;
    for (std::size_t end; (end = _unfinished_line.find('\n', start)) != std::string::npos; start = end + 1) {
      const std::string_view line = std::string_view(_unfinished_line).substr(start, end - start);
      if (line.substr(0, 4) == "huh?")
        throw std::runtime_error("LCDd does not understand a command");
      count -= line == "success" ? 1 : 0;
    }
    _unfinished_line.erase(0, start);
  }
}

} // namespace buttondriver::yardsticks
