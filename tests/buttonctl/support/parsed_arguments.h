// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/arguments/option_parser.h"
#include "buttonctl/commands/command.h"

#include <QCommandLineParser>
#include <QStringList>

#include <memory>
#include <stdexcept>

namespace buttondriver::test {

/// The arguments of one command, its name left out, as its builder gets them.
class ParsedArguments {
public:
  ParsedArguments(const buttonctl::Command &command, const QStringList &arguments)
      : _parser(parse(command, arguments)), _reader(QLatin1String(command.name), *_parser) {}

  buttonctl::ArgumentReader &reader() { return _reader; }

private:
  static std::unique_ptr<QCommandLineParser> parse(const buttonctl::Command &command, const QStringList &arguments) {
    auto parser = std::make_unique<QCommandLineParser>();
    buttonctl::add_options(*parser, command.options);
    if (const auto parsed = buttonctl::parse_options(*parser, arguments, QString()); !parsed)
      throw std::runtime_error(parsed.failure().text.toStdString());
    return parser;
  }

  const std::unique_ptr<QCommandLineParser> _parser;
  buttonctl::ArgumentReader _reader;
};

} // namespace buttondriver::test
