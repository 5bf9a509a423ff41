// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>

namespace buttondriver::simulator {

/// Notices that nothing more comes from a descriptor: of a pipe, that nobody has its other end open any more. What does
/// come is read and thrown away.
class InputEnd : public QObject {
  Q_OBJECT
public:
  /// `descriptor` stays the caller's, and is open as long as this object is there. At its end, `then` is called once,
  /// in the event loop of this thread.
  InputEnd(int descriptor, std::function<void()> then);

private Q_SLOTS:
  void read();

private:
  int _descriptor;
  std::function<void()> _then;
  QSocketNotifier _readable;
};

} // namespace buttondriver::simulator
