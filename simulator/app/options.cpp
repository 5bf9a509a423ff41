// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/options.h"

#include "outcome/outcome.h"
#include "simulator/http/web_page.h"

#include <QCommandLineParser>

namespace buttondriver::simulator {

namespace {

constexpr int most_positional_arguments = 3;

const QCommandLineOption root_option(
    QStringLiteral("root"),
    QStringLiteral("Put the fixed paths /etc/rv1000e and /opt/rv1000e under DIR. Default: a ready-made root."),
    QStringLiteral("DIR"));
const QCommandLineOption
    snapshot_option(QStringLiteral("snapshot"),
                    QStringLiteral("Write a picture of the panel when the program is asked to end, and on SIGUSR1."),
                    QStringLiteral("FILE.png"));
const QCommandLineOption record_option(
    QStringLiteral("record"),
    QStringLiteral("Write a line for each register transfer: microseconds, w or r, address, count, words."),
    QStringLiteral("FILE"));
const QCommandLineOption device_option(
    QStringLiteral("device"),
    QStringLiteral("Run no daemon. Another program drives the panel through a socket, which is made at SOCKET: one "
                   "that has libbuttondriver-device.so preloaded and BUTTONDRIVER_DEVICE=SOCKET in its environment."),
    QStringLiteral("SOCKET"));
const QCommandLineOption help_option({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help."));
const QCommandLineOption version_option({QStringLiteral("V"), QStringLiteral("version")},
                                        QStringLiteral("Print the version."));
const QCommandLineOption http_option(
    QStringLiteral("http"),
    QStringLiteral(
        "Serve the panel as a web page there, or not at all: off. Port 0: a free one. Default: 127.0.0.1:8080."),
    QStringLiteral("[ADDRESS:]PORT"));

/// Where the page goes, and whether it was asked for.
struct PageWish {
  std::optional<HttpEndpoint> endpoint; ///< nothing: no page
  bool is_asked_for = false;
};

Outcome<PageWish> read_http(const QCommandLineParser &parser) {
  if (!parser.isSet(http_option))
    return PageWish{WebPage::isAvailable() ? std::optional(HttpEndpoint()) : std::nullopt, false};
  const QString value = parser.value(http_option);
  if (value == QLatin1String("off"))
    return PageWish{};
  const auto endpoint = read_endpoint(value);
  if (!endpoint)
    return Failure{QStringLiteral("--http takes [ADDRESS:]PORT or off, not '%1'").arg(value)};
  if (!WebPage::isAvailable())
    return Failure{QStringLiteral("there is no web page in this build, which has no Qt WebSockets module")};
  return PageWish{endpoint, true};
}

/// What is wrong with --device and what goes with it, if anything is.
std::optional<QString> fault_of_device(const QCommandLineParser &parser) {
  if (!parser.isSet(device_option))
    return std::nullopt;
  if (parser.value(device_option).isEmpty())
    return QStringLiteral("--device takes the path of a socket");
  if (parser.isSet(root_option) || !parser.positionalArguments().isEmpty())
    return QStringLiteral("--root, MAP, ADDRESS and PORT are for a daemon, and with --device there is none");
  return std::nullopt;
}

/// As the daemon itself would get them. It insists on a map file, and does not read it.
QStringList daemon_arguments(const QString &program, const QStringList &positional) {
  QStringList arguments{program, positional.value(0, QStringLiteral("no-map-file"))};
  arguments += positional.mid(1);
  return arguments;
}

} // namespace

std::variant<Options, Answer> read_options(const QStringList &arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("The buttondriver daemon on a virtual panel, or the panel alone."));
  parser.addOptions(
      {root_option, snapshot_option, record_option, http_option, device_option, help_option, version_option});
  parser.addPositionalArgument(QStringLiteral("MAP"), QStringLiteral("Map file; not read."), QStringLiteral("[MAP"));
  parser.addPositionalArgument(QStringLiteral("ADDRESS"),
                               QStringLiteral("Empty: listen on IPv4 and IPv6; any other text: on IPv4."),
                               QStringLiteral("[ADDRESS"));
  parser.addPositionalArgument(QStringLiteral("PORT"), QStringLiteral("TCP port, 0 for a free one. Default: 3003."),
                               QStringLiteral("[PORT]]]"));

  if (!parser.parse(arguments))
    return Answer{parser.errorText(), 2};
  if (parser.isSet(help_option))
    return Answer{parser.helpText(), 0};
  if (parser.isSet(version_option))
    return Answer{QStringLiteral("buttondriver-sim " BUTTONDRIVER_VERSION "\n"), 0};
  const QStringList positional = parser.positionalArguments();
  if (positional.size() > most_positional_arguments)
    return Answer{QStringLiteral("too many arguments: at most MAP, ADDRESS and PORT"), 2};
  if (const auto wrong = fault_of_device(parser))
    return Answer{*wrong, 2};

  const auto http = read_http(parser);
  if (!http)
    return Answer{http.failure().text, 2};
  Options options;
  options.http = http->endpoint;
  options.http_is_asked_for = http->is_asked_for;
  options.simulation.device_socket = parser.value(device_option);
  options.simulation.root = parser.value(root_option);
  options.simulation.snapshot_file = parser.value(snapshot_option);
  options.simulation.record_file = parser.value(record_option);
  options.simulation.keeps_traffic = options.http.has_value();
  options.simulation.daemon_arguments = daemon_arguments(arguments.value(0), positional);
  return options;
}

} // namespace buttondriver::simulator
