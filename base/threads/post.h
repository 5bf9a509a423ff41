// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "threads/thread_sanitizer.h"

#include <QMetaObject>
#include <QObject>

#include <utility>

namespace buttondriver {

/// A function on its way to another thread. Qt orders what was done before it was handed over and what is done when it
/// runs; this tells ThreadSanitizer so. Every copy does it again, because Qt keeps only the last one.
template <class Function> class HandedOver {
public:
  explicit HandedOver(Function function) : _function(std::move(function)) { thread_sanitizer::happens_before(this); }
  HandedOver(const HandedOver &other) : _function(other._function) { thread_sanitizer::happens_before(this); }
  HandedOver(HandedOver &&other) noexcept : _function(std::move(other._function)) {
    thread_sanitizer::happens_before(this);
  }
  HandedOver &operator=(const HandedOver &) = delete;
  HandedOver &operator=(HandedOver &&) = delete;
  // One that never runs is also destroyed on the other thread.
  ~HandedOver() { thread_sanitizer::happens_after(this); }

  void operator()() {
    thread_sanitizer::happens_after(this);
    _function();
    // The thread that handed it over may be the last to let go of it.
    thread_sanitizer::happens_before(this);
  }

private:
  Function _function;
};

/// Has `function` called on the thread of `context` when the event loop there gets to it; never, when `context` is
/// destroyed before that. May be called from any thread while `context` lives.
template <class Function> void post(QObject *context, Function function) {
  QMetaObject::invokeMethod(context, HandedOver<Function>(std::move(function)), Qt::QueuedConnection);
}

} // namespace buttondriver
