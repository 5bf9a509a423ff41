#pragma once

#include "tools/outcome.h"
#include "tools/step.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace buttondriver::buttonctl {

/// Where the daemon is, and how long anything over the connection may take.
struct Endpoint {
  QString host = QStringLiteral("127.0.0.1");
  std::uint16_t port = 3003;
  int timeout_ms = 3000;
};

/// What a command line asks for.
struct Request {
  enum class Kind {
    print_help,
    print_version,
    steps,
    batch,
  };

  Kind kind = Kind::steps;
  Endpoint endpoint;
  bool dry_run = false;
  QString help;       ///< of print_help
  Steps steps;        ///< of steps
  QString batch_file; ///< of batch; empty for standard input
};

/// `arguments` are those behind the program's name. Files that a command names are read and converted here.
Outcome<Request> parse_command_line(const QStringList &arguments);

/// One line of a batch, UTF-8; an empty line or a comment yields no steps.
Outcome<Steps> parse_batch_line(const QByteArray &line);

} // namespace buttondriver::buttonctl
