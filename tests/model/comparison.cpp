// SPDX-License-Identifier: Apache-2.0
#include "model/comparison.h"

#include "files/owned_descriptor.h"

#include <QFile>

#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace buttondriver::test {

namespace {

/// Throws away what is written to standard output and to Qt's message channel while it lives.
class Silence {
public:
  Silence() : _saved(::dup(STDOUT_FILENO)), _handler(qInstallMessageHandler([](auto, const auto &, const auto &) {})) {
    std::fflush(stdout);
    const OwnedDescriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    ::dup2(nowhere.get(), STDOUT_FILENO);
  }
  ~Silence() {
    std::fflush(stdout);
    ::dup2(_saved.get(), STDOUT_FILENO);
    qInstallMessageHandler(_handler);
  }
  Silence(const Silence &) = delete;
  Silence &operator=(const Silence &) = delete;

private:
  OwnedDescriptor _saved;
  QtMessageHandler _handler;
};

} // namespace

Comparison::Comparison(const std::string &font_sources, const std::string &font_folder, LossyWire loses) {
  for (const auto &[width, height] : {std::pair(8, 16), std::pair(7, 5), std::pair(33, 2)}) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    _fonts[{width, height}] = BdfFont::read(font_sources + "/" + size + ".bdf");
    const std::string file = size + ".pcf.gz";
    if (!QFile::copy(QString::fromStdString(font_folder + "/" + file),
                     _font_folder.filePath(QString::fromStdString(file))))
      throw std::runtime_error("there is no font " + file);
  }
  _fonts[{9, 9}] = std::nullopt;
  write_file(_font_folder.filePath(QStringLiteral("9x9.pcf.gz")), "this is no font");
  const Silence silence;
  _panel.emplace(_font_folder.path().toStdString(), std::move(loses));
}

std::string Comparison::difference(const Sequence &sequence) {
  const Silence silence;
  PanelModel model(_fonts, first_font_width, first_font_height);
  _panel->restart(first_font_width, first_font_height);
  for (const Command &command : sequence) {
    model.apply(command);
    _panel->apply(command);
    if (command.kind != Command::Kind::look)
      continue;
    if (std::string different = differences(model.shown(), _panel->shown()); !different.empty())
      return different;
  }
  return differences(model.shown(), _panel->shown());
}

} // namespace buttondriver::test
