// SPDX-License-Identifier: Apache-2.0
#include "support/program.h"

#include "support/event_loop.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHostAddress>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace buttondriver::test {

namespace {

constexpr std::chrono::seconds limit{20};
constexpr int limit_ms = 20'000;

/// What process `pid` has open, as the system names it.
QStringList open_descriptors(qint64 pid) {
  QStringList targets;
  const QDir descriptors(QStringLiteral("/proc/%1/fd").arg(pid));
  for (const QString &name : descriptors.entryList(QDir::Files | QDir::System)) {
    char target[256] = {};
    if (::readlink(qPrintable(descriptors.filePath(name)), target, sizeof target - 1) > 0)
      targets += QString::fromLocal8Bit(target);
  }
  return targets;
}

/// The socket inodes that process `pid` holds.
QStringList socket_inodes(qint64 pid) {
  static const QRegularExpression socket_link(QStringLiteral("socket:\\[(\\d+)\\]"));
  QStringList inodes;
  for (const QString &target : open_descriptors(pid))
    inodes += socket_link.match(target).captured(1);
  return inodes;
}

/// The port of the first listening socket among `inodes`.
quint16 listening_port(const QStringList &inodes) {
  for (const char *table : {"/proc/net/tcp", "/proc/net/tcp6"}) {
    QFile file(QString::fromLatin1(table));
    if (!file.open(QIODevice::ReadOnly))
      continue;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
      const QList<QByteArray> columns = line.simplified().split(' ');
      constexpr const char *listening = "0A";
      if (columns.size() > 9 && columns[3] == listening && inodes.contains(QString::fromLatin1(columns[9])))
        return columns[1].split(':').last().toUShort(nullptr, 16);
    }
  }
  return 0;
}

void prepend(QProcessEnvironment &environment, const QString &variable, const QString &item) {
  const QString others = environment.value(variable);
  environment.insert(variable, others.isEmpty() ? item : item + QLatin1Char(':') + others);
}

// LD_PRELOAD, or what buttondriver_started_program() makes that of.
const QString preload = QStringLiteral(BUTTONDRIVER_PRELOAD_VARIABLE);

/// Has a program take the panel's files from `root`.
QProcessEnvironment environment_with(const QString &root) {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  prepend(environment, preload, QStringLiteral(BUTTONDRIVER_TEST_PRELOAD));
  // AddressSanitizer asks to be the first library; this one takes no memory, so that it may as well be the second.
  prepend(environment, QStringLiteral("ASAN_OPTIONS"), QStringLiteral("verify_asan_link_order=0"));
  environment.insert(QStringLiteral("BUTTONDRIVER_TEST_ROOT"), root);
  return environment;
}

/// Has it find the socket `device` in place of the device, too.
QProcessEnvironment environment_with(const QString &root, const QString &device) {
  QProcessEnvironment environment = environment_with(root);
  prepend(environment, preload, QStringLiteral(BUTTONDRIVER_STAND_IN));
  environment.insert(QStringLiteral("BUTTONDRIVER_DEVICE"), device);
  return environment;
}

} // namespace

Program::Program(const QString &file, const QStringList &arguments) {
  start(file, arguments, environment_with(_empty_root.path()));
}

Program::Program(const QString &file, const QStringList &arguments, const QString &root) {
  start(file, arguments, environment_with(root));
}

Program::Program(const QString &file, const QStringList &arguments, const QString &root, const QString &device) {
  start(file, arguments, environment_with(root, device));
}

void Program::start(const QString &file, const QStringList &arguments, const QProcessEnvironment &environment) {
  _process.setProcessEnvironment(environment);
  _process.start(file, arguments);
  EXPECT_TRUE(_process.waitForStarted(limit_ms)) << file.toStdString();
}

Program::~Program() {
  if (_process.state() == QProcess::NotRunning)
    return;
  _process.terminate();
  if (_process.waitForFinished(5'000))
    return;
  _process.kill();
  _process.waitForFinished(limit_ms);
}

void Program::collect() {
  _output += _process.readAllStandardOutput();
  _error += _process.readAllStandardError();
}

bool Program::waitForOutput(const QByteArray &text, int times) {
  return process_events_until(
             [&] {
               collect();
               return _output.count(text) >= times || !isRunning();
             },
             limit) &&
         standardOutput().count(text) >= times;
}

bool Program::waitForError(const QByteArray &text) {
  return process_events_until(
             [&] {
               collect();
               return _error.contains(text) || !isRunning();
             },
             limit) &&
         standardError().contains(text);
}

int Program::waitForEnd() {
  if (!process_events_until([&] { return !isRunning(); }, limit))
    return -1;
  collect();
  return _process.exitStatus() == QProcess::NormalExit ? _process.exitCode() : -1;
}

bool Program::endsWithin(std::chrono::milliseconds time) {
  return process_events_until([&] { return !isRunning(); }, time);
}

void Program::sendSignal(int signal) {
  const auto process = static_cast<pid_t>(_process.processId());
  ASSERT_GT(process, 0) << "it does not run"; // to 0 it would go to the test and all around it
  ::kill(process, signal);
}

void Program::stopReading() {
  _process.closeReadChannel(QProcess::StandardOutput);
  _process.closeReadChannel(QProcess::StandardError);
}

bool Program::hasOpen(const QString &file) const {
  return open_descriptors(_process.processId()).contains(QFileInfo(file).canonicalFilePath());
}

quint16 Program::listeningPort() {
  quint16 port = 0;
  process_events_until(
      [&] {
        port = listening_port(socket_inodes(_process.processId()));
        return port != 0 || !isRunning();
      },
      limit);
  return port;
}

std::unique_ptr<QTcpSocket> Program::connectTo() {
  auto socket = std::make_unique<QTcpSocket>();
  socket->connectToHost(QHostAddress(QHostAddress::LocalHost), listeningPort());
  EXPECT_TRUE(socket->waitForConnected(limit_ms));
  return socket;
}

QByteArray Program::standardOutput() {
  collect();
  return _output;
}

QByteArray Program::standardError() {
  collect();
  return _error;
}

void send_frames(QTcpSocket &socket, const QByteArray &hex) {
  socket.write(QByteArray::fromHex(hex));
  while (socket.bytesToWrite() > 0 && socket.waitForBytesWritten(limit_ms)) {
  }
}

bool answered_ping(QTcpSocket &socket) {
  send_frames(socket, "00000004 0000000c");
  const QByteArray expected = QByteArray::fromHex("00000004 00000001");
  // By the event loop, so that the program's log is read meanwhile: a full pipe would hold it up.
  const auto is_told = [&] {
    return socket.bytesAvailable() >= expected.size() || socket.state() != QAbstractSocket::ConnectedState;
  };
  return process_events_until(is_told, limit) && socket.read(expected.size()) == expected;
}

} // namespace buttondriver::test
