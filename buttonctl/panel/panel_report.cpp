// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/panel/panel_report.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <cmath>
#include <utility>

namespace buttondriver::buttonctl {

namespace {

constexpr int known_version = 1;

/// Takes members one after the other; the first that is wrong is kept.
class MemberReader {
public:
  explicit MemberReader(QJsonObject object) : _object(std::move(object)) {}

  /// The first member that was wrong, if any was.
  const Outcome<Done> &outcome() const { return _outcome; }

  /// Whether the member is there and says that its content is not known.
  bool isUnknown(const char *name) const { return _object.value(QLatin1String(name)).isNull(); }

  /// What the member's own member "fault" says; empty where it says nothing.
  QString faultOf(const char *name) const {
    return _object.value(QLatin1String(name)).toObject().value(QLatin1String("fault")).toString();
  }

  int number(const char *name) { return number(_object.value(QLatin1String(name)), name); }

  int number(const QJsonValue &value, const char *name) {
    const double whole = value.toDouble(std::nan(""));
    // In this form, a value that is no number fails too.
    if (!(whole >= 0 && whole <= 2147483647.0) || whole != std::floor(whole)) {
      fail(name, QStringLiteral("a whole number from 0 to 2147483647"));
      return 0;
    }
    return static_cast<int>(whole);
  }

  QString text(const QJsonValue &value, const char *name) {
    if (!value.isString())
      fail(name, QStringLiteral("a text"));
    return value.toString();
  }

  /// Any number of elements.
  QJsonArray list(const QJsonValue &value, const char *name) {
    if (!value.isArray())
      fail(name, QStringLiteral("a list"));
    return value.toArray();
  }

  QJsonArray list(const char *name) { return list(_object.value(QLatin1String(name)), name); }

  template <std::size_t Count> void lamps(const char *name, std::array<bool, Count> &lamps) {
    const QJsonArray values = list(name);
    if (values.size() != static_cast<int>(Count))
      fail(name, QStringLiteral("a list of %1").arg(Count));
    for (std::size_t i = 0; i < Count && _outcome; ++i) {
      const QJsonValue lit = values.at(static_cast<int>(i));
      if (!lit.isBool())
        fail(name, QStringLiteral("a list of true and false"));
      lamps[i] = lit.toBool();
    }
  }

  void fail(const char *name, const QString &expected) {
    if (_outcome)
      _outcome = Failure{QStringLiteral("'%1' must be %2").arg(QLatin1String(name), expected)};
  }

private:
  QJsonObject _object;
  Outcome<Done> _outcome{Done{}};
};

void read_blinking(MemberReader &members, PanelReport &report) {
  if (members.isUnknown("blinking"))
    return;
  auto &times = report.blinking.emplace();
  for (const QJsonValue entry : members.list("blinking")) {
    const QJsonObject object = entry.toObject();
    const int button = members.number(object.value(QLatin1String("button")), "blinking.button");
    times[button] = members.number(object.value(QLatin1String("time")), "blinking.time");
  }
}

/// The lines of one kind of every screen; nothing when they are not known.
std::optional<PanelReport::Text> read_lines(MemberReader &members, const QJsonArray &screens, const char *kind,
                                            const char *name) {
  PanelReport::Text lines;
  for (std::size_t screen = 0; screen < lines.size() && members.outcome(); ++screen) {
    const QJsonValue texts = screens.at(static_cast<int>(screen)).toObject().value(QLatin1String(kind));
    if (texts.isNull())
      return std::nullopt;
    int line = 0;
    for (const QJsonValue text : members.list(texts, name))
      lines[screen][line++] = members.text(text, name);
  }
  return lines;
}

void read_texts(MemberReader &members, PanelReport &report) {
  report.drawn_fault = members.faultOf("font");
  if (members.isUnknown("screens"))
    return;
  const QJsonArray screens = members.list("screens");
  if (screens.size() != static_cast<int>(dimensions::screen_count))
    members.fail("screens", QStringLiteral("a list of %1").arg(dimensions::screen_count));
  report.sent = read_lines(members, screens, "text", "screens.text");
  report.drawn = read_lines(members, screens, "drawn", "screens.drawn");
}

} // namespace

Outcome<PanelReport> parse_panel_report(const QByteArray &json) {
  QJsonParseError error;
  const QJsonDocument document = QJsonDocument::fromJson(json, &error);
  if (!document.isObject())
    return Failure{QStringLiteral("it is no JSON object (%1)").arg(error.errorString())};
  MemberReader members(document.object());
  const int version = members.number("version");
  if (members.outcome() && version != known_version)
    return Failure{QStringLiteral("its version is %1; this program reads version %2").arg(version).arg(known_version)};

  PanelReport report;
  members.lamps("button_leds", report.button_leds);
  members.lamps("status_leds", report.status_leds);
  members.lamps("toggles", report.toggles);
  report.intensity = members.number("intensity");
  if (report.intensity > dimensions::highest_intensity_level)
    members.fail("intensity", QStringLiteral("a whole number from 0 to %1").arg(dimensions::highest_intensity_level));
  read_blinking(members, report);
  read_texts(members, report);
  if (!members.outcome())
    return members.outcome().failure();
  return report;
}

} // namespace buttondriver::buttonctl
