// SPDX-License-Identifier: Apache-2.0
#include "support/mosquitto/mosquitto_broker.h"

#include <QDeadlineTimer>
#include <QHostAddress>
#include <QTcpSocket>

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace buttondriver::test {

namespace {

constexpr int limit_ms = 60'000;

/// A socket that is bound to a free port and never listens. Another one may listen on it as long as both say that the
/// address is to be used again, which mosquitto does.
OwnedDescriptor hold_port(quint16 &port) {
  OwnedDescriptor descriptor(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const int yes = 1;
  ::setsockopt(descriptor.get(), SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  const bool is_bound = ::bind(descriptor.get(), reinterpret_cast<const sockaddr *>(&address), size) == 0 &&
                        ::getsockname(descriptor.get(), reinterpret_cast<sockaddr *>(&address), &size) == 0;
  EXPECT_TRUE(is_bound) << "no free port";
  port = ntohs(address.sin_port);
  return descriptor;
}

/// Runs a program to its end; a test failure if that is not a good one.
void run(const QString &program, const QStringList &arguments) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  ASSERT_TRUE(process.waitForFinished(limit_ms)) << program.toStdString();
  EXPECT_EQ(process.exitCode(), 0) << process.readAll().toStdString();
}

} // namespace

MosquittoBroker::MosquittoBroker() : MosquittoBroker(Options()) {}

MosquittoBroker::MosquittoBroker(Options options) : _options(std::move(options)) {
  _held_port = hold_port(_port);
  writeConfiguration();
  start();
}

MosquittoBroker::~MosquittoBroker() {
  if (isRunning())
    end(SIGKILL);
}

void MosquittoBroker::writeConfiguration() {
  QByteArray lines = "log_dest stderr\nlog_type error\nlog_type warning\nlog_type notice\nlog_type information\n";
  // Root would else become a user who may not read the folder.
  if (const passwd *const user = ::getpwuid(::getuid()))
    lines += "user " + QByteArray(user->pw_name) + '\n';
  lines += "allow_anonymous " + QByteArray(_options.users.isEmpty() ? "true" : "false") + '\n';
  if (_options.has_persistence)
    lines += "persistence true\npersistence_location " + QByteArray::fromStdString(_folder.path("")) + '\n';
  if (!_options.access_list.isEmpty())
    lines +=
        "acl_file " + QByteArray::fromStdString(_folder.write("access", _options.access_list.toStdString())) + '\n';
  if (!_options.users.isEmpty()) {
    const std::string file = _folder.write("passwords", "");
    for (auto user = _options.users.cbegin(); user != _options.users.cend(); ++user)
      run(QStringLiteral("mosquitto_passwd"), {QStringLiteral("-b"), QString::fromStdString(file),
                                               QString::fromUtf8(user.key()), QString::fromUtf8(user.value())});
    lines += "password_file " + QByteArray::fromStdString(file) + '\n';
  }
  lines += _options.more_lines;
  lines += "\nlistener " + QByteArray::number(_port) + " 127.0.0.1\n";
  if (!_options.certificate.isEmpty())
    lines += "certfile " + _options.certificate.toUtf8() + "\nkeyfile " + _options.key.toUtf8() + '\n';
  if (!_options.client_authority.isEmpty())
    lines += "cafile " + _options.client_authority.toUtf8() + "\nrequire_certificate true\n";
  lines += _options.lines_of_listener + '\n';
  _folder.write("mosquitto.conf", lines.toStdString());
}

bool MosquittoBroker::start() {
  _log.clear();
  _process = std::make_unique<QProcess>();
  _process->setProcessChannelMode(QProcess::MergedChannels);
  _process->start(QStringLiteral(BUTTONDRIVER_MOSQUITTO),
                  {QStringLiteral("-c"), QString::fromStdString(_folder.path("mosquitto.conf"))});
  // It listens before it says that it runs, but forgets a SIGTERM until it does what it listens for.
  bool runs = waitForLog(" running");
  QTcpSocket caller;
  caller.connectToHost(QHostAddress::LocalHost, _port);
  runs = runs && caller.waitForConnected(limit_ms) && waitForLog("New connection from");
  EXPECT_TRUE(runs) << _log.toStdString();
  return runs;
}

bool MosquittoBroker::waitForLog(const QByteArray &text) {
  const QDeadlineTimer deadline(limit_ms);
  while (!log().contains(text)) {
    if (!_process->waitForReadyRead(static_cast<int>(deadline.remainingTime())))
      return log().contains(text);
  }
  return true;
}

void MosquittoBroker::end(int signal) {
  if (!isRunning())
    return;
  ::kill(static_cast<pid_t>(_process->processId()), signal);
  EXPECT_TRUE(_process->waitForFinished(limit_ms));
}

void MosquittoBroker::freeze() { ::kill(static_cast<pid_t>(_process->processId()), SIGSTOP); }
void MosquittoBroker::thaw() { ::kill(static_cast<pid_t>(_process->processId()), SIGCONT); }

QByteArray MosquittoBroker::log() {
  if (_process)
    _log += _process->readAll();
  return _log;
}

} // namespace buttondriver::test
