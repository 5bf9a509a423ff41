#pragma once

namespace buttondriver {

/// One piece of hardware work. Made on the main thread, carried out and deleted on the worker thread; deleted without
/// being carried out when the facade goes first.
class FPGATask {
public:
  FPGATask() = default;
  virtual ~FPGATask() = default;
  FPGATask(const FPGATask &) = delete;
  FPGATask &operator=(const FPGATask &) = delete;

  /// Called once, on the worker thread, with the facade's mutex held.
  virtual void execute() = 0;
};

} // namespace buttondriver
