// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

#include <utility>
#include <variant>

namespace buttondriver {

/// What is wrong and what to do about it, as one line for the user, without the program's name in front.
struct Failure {
  QString text;
};

/// A value, or why there is none: the one way in which a function of the programs tells that it failed.
template <class T> class [[nodiscard]] Outcome {
public:
  Outcome(T value) : _content(std::move(value)) {}
  Outcome(Failure failure) : _content(std::move(failure)) {}

  explicit operator bool() const { return std::holds_alternative<T>(_content); }
  /// Only when there is a value.
  const T &operator*() const { return std::get<T>(_content); }
  T &operator*() { return std::get<T>(_content); }
  const T *operator->() const { return &std::get<T>(_content); }
  T *operator->() { return &std::get<T>(_content); }
  /// Only when there is no value.
  const Failure &failure() const { return std::get<Failure>(_content); }

private:
  std::variant<T, Failure> _content;
};

/// The outcome of something that yields nothing.
struct Done {};

} // namespace buttondriver
