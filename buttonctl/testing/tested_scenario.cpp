// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/testing/tested_scenario.h"

#include "buttonctl/testing/results/failure_text.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcessEnvironment>

#include <utility>

namespace buttondriver::buttonctl {

namespace {

const QString ports_name = QStringLiteral("ports");
const QString log_name = QStringLiteral("daemon.log");
const QString client_log_name = QStringLiteral("client.log");
const QString picture_name = QStringLiteral("panel.png");

QString value_of(const QByteArray &ports, const QByteArray &name) {
  for (const QByteArray &line : ports.split('\n'))
    if (line.startsWith(name + '='))
      return QString::fromLatin1(line.mid(name.size() + 1));
  return {};
}

} // namespace

TestedScenario::TestedScenario(const TestPlan &plan, TestResult result, std::function<void()> is_done)
    : _plan(plan), _result(std::move(result)), _is_done(std::move(is_done)) {
  _limit.setSingleShot(true);
  QObject::connect(&_limit, &QTimer::timeout, &_limit, [this] {
    finish(QStringLiteral("not done after %1 s, ended; allow more time with --limit").arg(_plan.limit_ms / 1000.0));
  });
  QObject::connect(&_ports_watcher, &QFileSystemWatcher::directoryChanged, &_limit, [this] { lookForPorts(); });
  QObject::connect(&_simulator, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &_limit,
                   [this] { simulatorHasEnded(); });
  QObject::connect(&_scenario, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), &_limit,
                   [this] { scenarioHasEnded(); });
}

void TestedScenario::start() {
  _clock.start();
  _limit.start(_plan.limit_ms);
  if (!_ports_folder.isValid())
    return finish(QStringLiteral("there can be no temporary folder: %1").arg(_ports_folder.errorString()));
  if (!prepareFolder())
    return finish(QStringLiteral("the folder '%1' cannot be made").arg(_result.folder));
  startSimulator();
}

/// What an earlier run has left goes, so that nobody takes it for what this one leaves.
bool TestedScenario::prepareFolder() {
  QDir folder(_result.folder);
  for (const QString &name : folder.entryList({log_name, client_log_name, QStringLiteral("*.png")}, QDir::Files))
    folder.remove(name);
  return QDir().mkpath(_result.folder);
}

void TestedScenario::startSimulator() {
  const QDir folder(_result.folder);
  _ports_watcher.addPath(_ports_folder.path());
  if (!_simulator.run(_plan.simulator,
                      {QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--http"), QStringLiteral("0"),
                       QStringLiteral("--ports-file"), _ports_folder.filePath(ports_name), QStringLiteral("--quiet"),
                       QStringLiteral("--log"), folder.filePath(log_name), QStringLiteral("--snapshot"),
                       folder.filePath(picture_name)}))
    return finish(
        QStringLiteral("the simulator '%1' cannot be started: %2").arg(_plan.simulator, _simulator.errorString()));
  lookForPorts();
}

void TestedScenario::lookForPorts() {
  QFile file(_ports_folder.filePath(ports_name));
  if (_is_finished || _ports_watcher.directories().isEmpty() || !file.open(QIODevice::ReadOnly))
    return;
  _ports_watcher.removePath(_ports_folder.path());
  const QByteArray ports = file.readAll();
  const QString port = value_of(ports, "daemon");
  const QString page = value_of(ports, "http");
  if (port.isEmpty() || page.isEmpty())
    return finish(QStringLiteral("the simulator '%1' does not tell its ports").arg(_plan.simulator));
  startScenario(port, page);
}

void TestedScenario::startScenario(const QString &port, const QString &page) {
  const QString panel = QStringLiteral("http://127.0.0.1:%1").arg(page);
  // What the user has set for other panels must reach neither program.
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("BUTTONDRIVER_HOST"), QStringLiteral("127.0.0.1"));
  environment.insert(QStringLiteral("BUTTONDRIVER_PORT"), port);
  environment.insert(QStringLiteral("BUTTONDRIVER_PANEL"), panel);
  environment.insert(QStringLiteral("BUTTONDRIVER_SCENARIO"), _result.file);
  _scenario.setProcessEnvironment(environment);
  _client.setProcessEnvironment(environment);
  if (!_plan.client.isEmpty()) {
    _client.setProcessChannelMode(QProcess::MergedChannels);
    _client.setStandardOutputFile(QDir(_result.folder).filePath(client_log_name));
    if (!_client.run(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), _plan.client}))
      return finish(QStringLiteral("the client cannot be started: %1").arg(_client.errorString()));
  }
  if (!_scenario.run(QCoreApplication::applicationFilePath(),
                     {QStringLiteral("run"), _result.file, QStringLiteral("--output"), _result.folder,
                      QStringLiteral("--timeout"), QString::number(_plan.timeout_ms)}))
    finish(QStringLiteral("'buttonctl run' cannot be started: %1").arg(_scenario.errorString()));
}

void TestedScenario::simulatorHasEnded() {
  if (_scenario.state() != QProcess::NotRunning)
    return; // It will fail, and say at which line.
  finish(QStringLiteral("the simulator '%1' does not start: %2")
             .arg(_plan.simulator, last_line(_simulator.readAllStandardError())));
}

void TestedScenario::scenarioHasEnded() {
  if (_scenario.exitStatus() == QProcess::NormalExit && _scenario.exitCode() == 0)
    return finish(QString());
  finish(failure_text(_result.file, _scenario.readAllStandardError()));
}

void TestedScenario::finish(const QString &failure) {
  if (_is_finished)
    return;
  _is_finished = true;
  _limit.stop();
  _scenario.stop();
  _client.stop();
  _simulator.stop();
  _result.milliseconds = _clock.elapsed();
  QDir folder(_result.folder);
  if (failure.isEmpty()) {
    for (const QString &name : {log_name, client_log_name, picture_name})
      folder.remove(name);
    QDir().rmdir(_result.folder);
  } else {
    _result.failure = failure;
    _result.kept = folder.entryList(QDir::Files, QDir::Name);
  }
  // Later, since who is told may let this go.
  QTimer::singleShot(0, &_limit, _is_done);
}

} // namespace buttondriver::buttonctl
