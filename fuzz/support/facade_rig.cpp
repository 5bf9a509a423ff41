// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/facade_rig.h"

#include "fpga/queue/fpga_task.h"
#include "fuzz/support/quiet.h"

#include <QtGlobal>

#include <filesystem>
#include <fstream>
#include <memory>
#include <semaphore.h>

namespace buttondriver::fuzz {

namespace {

class PostTask : public FPGATask {
public:
  explicit PostTask(sem_t *done) : _done(done) {}
  void execute() override { ::sem_post(_done); }

private:
  sem_t *_done;
};

void drop_message(QtMsgType, const QMessageLogContext &, const QString &) {}

void write(const std::string &file, const char *content) {
  std::filesystem::create_directories(std::filesystem::path(file).parent_path());
  std::ofstream(file, std::ios::binary) << content;
}

} // namespace

SystemPaths FacadeRig::make_files(const test::TemporaryFolder &folder) {
  // Before the first object that has something to say.
  drop_standard_output();
  qInstallMessageHandler(drop_message);
  SystemPaths paths = SystemPaths::under(folder.path("root"));
  paths.font_directory = BUTTONDRIVER_TEST_FONTS;
  write(paths.launcher_configuration, "[font]\nwidth=8\nheight=16\n");
  write(paths.button_level_file, "led 80\nlcd 90\nscr 70\n");
  return paths;
}

FacadeRig::FacadeRig() : _application(_argument_count, nullptr), _paths(make_files(_folder)), _fpga(_paths) {}

void FacadeRig::settle() {
  sem_t done;
  ::sem_init(&done, 0, 0);
  _fpga.queue(std::make_unique<PostTask>(&done));
  while (::sem_wait(&done) != 0) {
  }
  ::sem_destroy(&done);
}

} // namespace buttondriver::fuzz
