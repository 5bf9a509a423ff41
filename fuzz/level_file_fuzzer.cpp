// SPDX-License-Identifier: Apache-2.0
// Button level files, for both of their readers.
//
// Input, from the end: how many levels the reader of the service program has before (one byte). In front of it: the
// file.
#include "buttonlevel/buttonlevel.h"
#include "buttons/button_levels.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/support/input.h"
#include "fuzz/support/memory_file.h"
#include "fuzz/support/quiet.h"
#include "fuzz/support/require.h"

#include <QtGlobal>

namespace buttondriver::fuzz {

namespace {

struct Rig {
  Rig() {
    drop_standard_output();
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
  }
};

void read_into_the_dispatcher(const std::string &path) {
  ButtonLevels levels;
  const ButtonLevels before = levels;
  std::int32_t told = before.scr;
  levels.read(path, [&](std::int32_t level) {
    require(level == levels.scr, "the level that is told is the one that is kept");
    told = level;
  });
  require(told == levels.scr, "no change of the screen level is kept to oneself");
}

void read_into_a_list(const std::string &path, int levels_before) {
  QStringList levels;
  for (int i = 0; i < levels_before; ++i)
    levels += QString::number(i);
  const QStringList before = levels;
  const bool is_read = readButtonlevelFile(levels, path);
  require(is_read == !levels.isEmpty(), "the result says whether there are levels");
  require(levels == before || levels.size() == qMax(2, levels_before), "a level is stored in a list of two or more");
  for (const QString &level : levels)
    require(level == level.trimmed() && !level.contains(QLatin1Char(' ')), "a level has no blanks");

  // What was read can be written, and what was written can be read.
  const MemoryFile copy({});
  writeButtonlevelFile(levels, copy.path());
  QStringList again = levels;
  require(readButtonlevelFile(again, copy.path()), "what was written is read");
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace buttondriver::fuzz;
  static const Rig rig;
  Input input(data, size);
  const int levels_before = input.number<std::uint8_t>() % 4;
  const MemoryFile file(input.rest());
  read_into_the_dispatcher(file.path());
  read_into_a_list(file.path(), levels_before);
  return 0;
}
