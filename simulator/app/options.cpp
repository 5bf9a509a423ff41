// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/options.h"

#include "outcome/outcome.h"
#include "protocol/framing.h"
#include "simulator/http/web_page.h"
#include "simulator/simulation/panel_root.h"

#include <QCommandLineParser>

namespace buttondriver::simulator {

namespace {

constexpr int most_positional_arguments = 3;
constexpr int highest_port = 65535;
constexpr int highest_percent = 100;

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
const QCommandLineOption font_option(
    QStringLiteral("font"),
    QStringLiteral(
        "Use the font of this size, as 10x20, whatever the root's configuration says. With --device, the font "
        "or the file of the font that the other program uses: texts are read with it."),
    QStringLiteral("WxH|FILE"));
const QCommandLineOption port_option(QStringLiteral("port"), QStringLiteral("The same as the argument PORT."),
                                     QStringLiteral("PORT"));
const QCommandLineOption intensity_option(QStringLiteral("intensity"),
                                          QStringLiteral("Brightness of the screens at the start. Default: 100."),
                                          QStringLiteral("PERCENT"));
const QCommandLineOption ports_file_option(
    QStringLiteral("ports-file"),
    QStringLiteral("Write the ports to the file once they are there, as lines daemon=PORT and http=PORT."),
    QStringLiteral("FILE"));
const QCommandLineOption until_input_ends_option(
    QStringLiteral("until-input-ends"),
    QStringLiteral("End also when standard input ends: of a pipe, when the program that holds its other end is gone."));
const QCommandLineOption log_option(
    QStringLiteral("log"),
    QStringLiteral("Write the log to the file. What the simulator itself tells goes to the terminal as before."),
    QStringLiteral("FILE"));
const QCommandLineOption quiet_option(QStringLiteral("quiet"),
                                      QStringLiteral("Tell nothing of the simulator itself but what went wrong."));
const QCommandLineOption verbose_option(QStringLiteral("verbose"),
                                        QStringLiteral("Tell also which root, font and files are used."));
const QCommandLineOption help_option({QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Print this help."));
const QCommandLineOption version_option({QStringLiteral("V"), QStringLiteral("version")},
                                        QStringLiteral("Print the version."));
const QCommandLineOption http_option(
    QStringLiteral("http"),
    QStringLiteral(
        "Serve the panel as a web page there, or not at all: off. Port 0: a free one. Default: 127.0.0.1:%1.")
        .arg(HttpEndpoint().port),
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

/// What is wrong with the options of a daemon, or with --device, with which there is none.
std::optional<QString> fault_of_driver(const QCommandLineParser &parser) {
  const bool has_size = read_font_size(parser.value(font_option)).isValid();
  if (!parser.isSet(device_option)) {
    if (parser.isSet(font_option) && !has_size)
      return QStringLiteral("--font takes the size of a font, WIDTHxHEIGHT, not '%1'").arg(parser.value(font_option));
    return std::nullopt;
  }
  if (parser.value(device_option).isEmpty())
    return QStringLiteral("--device takes the path of a socket");
  if (parser.isSet(font_option) && parser.value(font_option).isEmpty())
    return QStringLiteral("--font takes the size or the file of a font");
  if (parser.isSet(root_option) || parser.isSet(port_option) || parser.isSet(intensity_option) ||
      !parser.positionalArguments().isEmpty())
    return QStringLiteral(
        "--root, --port, --intensity, MAP, ADDRESS and PORT are for a daemon, and with --device there "
        "is none");
  return std::nullopt;
}

/// The number of an option from 0 to `highest`; nothing when it is something else.
std::optional<int> read_number(const QCommandLineParser &parser, const QCommandLineOption &option, int highest) {
  bool is_number = false;
  const int number = parser.value(option).toInt(&is_number, 10);
  return is_number && number >= 0 && number <= highest ? std::optional(number) : std::nullopt;
}

/// What is wrong with options that are together, or have a value that they cannot have.
std::optional<QString> fault_of_values(const QCommandLineParser &parser) {
  // An empty one is a variable of a script that was not set.
  for (const QCommandLineOption *file : {&ports_file_option, &log_option})
    if (parser.isSet(*file) && parser.value(*file).isEmpty())
      return QStringLiteral("--%1 takes the name of a file").arg(file->names().constFirst());
  if (parser.isSet(quiet_option) && parser.isSet(verbose_option))
    return QStringLiteral("use only one of --quiet and --verbose");
  if (parser.isSet(port_option) && parser.positionalArguments().size() == most_positional_arguments)
    return QStringLiteral("use only one of --port and PORT");
  if (parser.isSet(port_option) && !read_number(parser, port_option, highest_port))
    return QStringLiteral("--port takes a number from 0 to %1, not '%2'")
        .arg(QString::number(highest_port), parser.value(port_option));
  if (parser.isSet(intensity_option) && !read_number(parser, intensity_option, highest_percent))
    return QStringLiteral("--intensity takes a number from 0 to %1, not '%2'")
        .arg(QString::number(highest_percent), parser.value(intensity_option));
  return std::nullopt;
}

/// As the daemon itself would get them. It insists on a map file, and does not read it.
QStringList daemon_arguments(const QString &program, const QCommandLineParser &parser) {
  const QStringList positional = parser.positionalArguments();
  QStringList arguments{program, positional.value(0, QStringLiteral("no-map-file"))};
  arguments += positional.mid(1);
  if (parser.isSet(port_option))
    arguments = QStringList{program, arguments[1], arguments.value(2), parser.value(port_option)};
  return arguments;
}

Notices notices_of(const QCommandLineParser &parser) {
  if (parser.isSet(quiet_option))
    return Notices::faults;
  return parser.isSet(verbose_option) ? Notices::all : Notices::usual;
}

} // namespace

std::variant<Options, Answer> read_options(const QStringList &arguments) {
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("The buttondriver daemon on a virtual panel, or the panel alone."));
  parser.addOptions({root_option, font_option, intensity_option, port_option, http_option, ports_file_option,
                     until_input_ends_option, device_option, snapshot_option, record_option, log_option, quiet_option,
                     verbose_option, help_option, version_option});
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
  if (parser.positionalArguments().size() > most_positional_arguments)
    return Answer{QStringLiteral("too many arguments: at most MAP, ADDRESS and PORT"), 2};
  for (const auto &wrong : {fault_of_driver(parser), fault_of_values(parser)})
    if (wrong)
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
  options.simulation.daemon_arguments = daemon_arguments(arguments.value(0), parser);
  options.simulation.font = parser.value(font_option);
  if (parser.isSet(intensity_option))
    options.simulation.intensity_percent = parser.value(intensity_option).toInt();
  options.notices = notices_of(parser);
  options.log_file = parser.value(log_option);
  options.ports_file = parser.value(ports_file_option);
  options.until_input_ends = parser.isSet(until_input_ends_option);
  return options;
}

} // namespace buttondriver::simulator
