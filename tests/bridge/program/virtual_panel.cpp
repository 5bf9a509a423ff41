// SPDX-License-Identifier: Apache-2.0
#include "virtual_panel.h"

#include "support/event_loop.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace buttondriver::bridge {

namespace {

QByteArray read(const std::string &path) {
  QFile file(QFile::decodeName(path.c_str()));
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

quint16 port_in(const QByteArray &ports, const QByteArray &name) {
  for (const QByteArray &line : ports.split('\n'))
    if (line.startsWith(name + '='))
      return line.mid(name.size() + 1).toUShort();
  return 0;
}

} // namespace

VirtualPanel::VirtualPanel() { start(0); }

void VirtualPanel::start(quint16 port) {
  const std::string ports = _folder.path("ports");
  QFile::remove(QFile::decodeName(ports.c_str()));
  _program = std::make_unique<test::Program>(
      QStringLiteral(BUTTONDRIVER_SIM_PROGRAM),
      QStringList{QStringLiteral("--ports-file"), QFile::decodeName(ports.c_str()), QStringLiteral("--log"),
                  QFile::decodeName(_folder.path("log").c_str()), QStringLiteral("--http"), QStringLiteral("0"),
                  QStringLiteral("--port"), QString::number(port)});
  ASSERT_TRUE(test::process_events_until([&] { return !read(ports).isEmpty() || !_program->isRunning(); }));
  _port = port_in(read(ports), "daemon");
  _http_port = port_in(read(ports), "http");
  ASSERT_NE(0, _port) << _program->standardError().toStdString();
}

void VirtualPanel::cutPower() {
  _program->sendSignal(SIGKILL);
  _program->waitForEnd();
}

void VirtualPanel::startAgain() { start(_port); }

void VirtualPanel::expect(const QByteArray &expectation) {
  const std::string scenario = _folder.write("scenario", (expectation + '\n').toStdString());
  runTool({QStringLiteral("run"), QFile::decodeName(scenario.c_str()), QStringLiteral("--timeout"),
           QStringLiteral("60000"), QStringLiteral("--port"), QString::number(_port)});
}

QByteArray VirtualPanel::picture() { return runTool({QStringLiteral("screenshot"), QStringLiteral("-")}); }

QByteArray VirtualPanel::runTool(const QStringList &arguments) {
  QProcess tool;
  tool.start(QStringLiteral(BUTTONCTL),
             arguments + QStringList{QStringLiteral("--panel"), QStringLiteral("http://127.0.0.1:%1").arg(_http_port)});
  const bool has_ended =
      test::process_events_until([&] { return tool.state() == QProcess::NotRunning; }, std::chrono::seconds(90));
  EXPECT_TRUE(has_ended && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0)
      << arguments.join(QLatin1Char(' ')).toStdString() << ": " << tool.readAllStandardError().toStdString();
  return tool.readAllStandardOutput();
}

} // namespace buttondriver::bridge
