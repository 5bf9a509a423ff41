// SPDX-License-Identifier: Apache-2.0
#include "unixsignalhandler/unix_signal_handler.h"

#include "logging/log_line.h"

#include <QPointer>
#include <QSocketNotifier>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace unixsignalhandler {

namespace {

using buttondriver::debug_line;

/// How a signal lies between the two ends of the pair.
using SignalRecord = std::int32_t;

const std::pair<const int, std::string> signal_name_table[] = {
    {SIGHUP, "SIGHUP"},       {SIGINT, "SIGINT"},   {SIGQUIT, "SIGQUIT"},   {SIGILL, "SIGILL"},   {SIGTRAP, "SIGTRAP"},
    {SIGABRT, "SIGABRT"},     {SIGBUS, "SIGBUS"},   {SIGFPE, "SIGFPE"},     {SIGKILL, "SIGKILL"}, {SIGUSR1, "SIGUSR1"},
    {SIGSEGV, "SIGSEGV"},     {SIGUSR2, "SIGUSR2"}, {SIGPIPE, "SIGPIPE"},   {SIGALRM, "SIGALRM"}, {SIGTERM, "SIGTERM"},
    {SIGSTKFLT, "SIGSTKFLT"}, {SIGCHLD, "SIGCHLD"}, {SIGCONT, "SIGCONT"},   {SIGSTOP, "SIGSTOP"}, {SIGTSTP, "SIGTSTP"},
    {SIGTTIN, "SIGTTIN"},     {SIGTTOU, "SIGTTOU"}, {SIGURG, "SIGURG"},     {SIGXCPU, "SIGXCPU"}, {SIGXFSZ, "SIGXFSZ"},
    {SIGVTALRM, "SIGVTALRM"}, {SIGPROF, "SIGPROF"}, {SIGWINCH, "SIGWINCH"}, {SIGIO, "SIGIO"},     {SIGPWR, "SIGPWR"},
    {SIGSYS, "SIGSYS"},
};

} // namespace

static_assert(std::atomic<int>::is_always_lock_free, "a signal may interrupt whoever holds the lock");

std::atomic<int> UnixSignalHandler::signalsFd[2] = {{-1}, {-1}};
std::map<int, SignalCallback> UnixSignalHandler::signalHandlers;
std::map<int, std::string> UnixSignalHandler::signalNames(std::begin(signal_name_table), std::end(signal_name_table));

UnixSignalHandler::UnixSignalHandler(QObject *parent) : QObject(parent) {
  // Non-blocking: a full pair must not stop the thread that a signal interrupts, nor an empty one the event loop.
  int ends[2];
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends) != 0)
    qFatal("Couldn't create signalsFd socketpair");
  signalsFd[0] = ends[0];
  signalsFd[1] = ends[1];
  _notifier = std::make_unique<QSocketNotifier>(signalsFd[1], QSocketNotifier::Read);
  // By name: the argument's type is not the same in Qt 5 and Qt 6.
  connect(_notifier.get(), SIGNAL(activated(int)), this, SLOT(callSignalHandlers()));
  signalHandlers.clear();
}

UnixSignalHandler::~UnixSignalHandler() { signalHandlers.clear(); }

bool UnixSignalHandler::installSignalHandler(int sig, SignalCallback callback) {
  if (sig == SIGKILL || sig == SIGSTOP) {
    debug_line() << "ERROR: " << signalNames[sig].c_str() << " cannot be caught."
                 << " Not adding handler.";
    return false;
  }
  if (signalHandlers.count(sig) > 0)
    return false;
  const std::string &name = signalNames[sig];
  debug_line() << "Installing handler for " << name.c_str();
  struct sigaction action = {};
  action.sa_handler = writeSignalToSocket;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  if (::sigaction(sig, &action, nullptr) < 0) {
    debug_line() << "Failed to install handler for " << name.c_str();
    return false;
  }
  debug_line() << "Installation of " << name.c_str() << " handler was successful";
  signalHandlers[sig] = callback;
  return true;
}

bool UnixSignalHandler::removeSignalHandler(int sig) {
  const auto handler = signalHandlers.find(sig);
  if (handler == signalHandlers.end())
    return false;
  const std::string &name = signalNames[sig];
  debug_line() << "Removing " << name.c_str() << " handler";
  struct sigaction action = {};
  action.sa_handler = SIG_DFL;
  if (::sigaction(sig, &action, nullptr) < 0) {
    debug_line() << "Failed to remove handler for " << name.c_str();
    return false;
  }
  debug_line() << "Removal of " << name.c_str() << " handler was successful";
  signalHandlers.erase(handler);
  return true;
}

void UnixSignalHandler::writeSignalToSocket(int sig) {
  const int interrupted_errno = errno;
  const SignalRecord record = sig;
  const ssize_t written = ::write(signalsFd[0], &record, sizeof record);
  static_cast<void>(written);
  errno = interrupted_errno;
}

const std::map<int, std::string> &UnixSignalHandler::nameTable() { return signalNames; }

void UnixSignalHandler::callSignalHandlers() {
  _notifier->setEnabled(false);
  // The callback may well destroy the bridge.
  const QPointer<UnixSignalHandler> self(this);
  SignalRecord record = 0;
  // From the end that woke this bridge: a bridge that was replaced would otherwise leave its own pair readable and be
  // woken for ever.
  const auto read_end = static_cast<int>(_notifier->socket());
  if (::read(read_end, &record, sizeof record) == sizeof record) {
    const auto handler = signalHandlers.find(record);
    const SignalCallback callback = handler != signalHandlers.end() ? handler->second : nullptr;
    if (callback)
      callback();
  }
  if (self)
    _notifier->setEnabled(true);
}

} // namespace unixsignalhandler
