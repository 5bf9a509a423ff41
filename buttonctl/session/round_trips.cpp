// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/round_trips.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace buttondriver::buttonctl {

namespace {

struct Extremes {
  double shortest;
  double average;
  double longest;
};

Extremes extremes_of(const std::vector<double> &round_trips) {
  const auto [shortest, longest] = std::minmax_element(round_trips.begin(), round_trips.end());
  const double sum = std::accumulate(round_trips.begin(), round_trips.end(), 0.0);
  return {*shortest, sum / static_cast<double>(round_trips.size()), *longest};
}

/// Whole microseconds, so that no digits stand there that mean nothing.
double rounded(double milliseconds) {
  constexpr double microseconds_a_millisecond = 1000;
  return std::round(milliseconds * microseconds_a_millisecond) / microseconds_a_millisecond;
}

} // namespace

QString milliseconds_text(double milliseconds) {
  constexpr int decimals = 3;
  return QString::number(milliseconds, 'f', decimals) + QLatin1String(" ms");
}

QString round_trips_text(const std::vector<double> &round_trips_ms) {
  const Extremes extremes = extremes_of(round_trips_ms);
  return QStringLiteral("%1 answers: shortest %2, average %3, longest %4")
      .arg(round_trips_ms.size())
      .arg(milliseconds_text(extremes.shortest), milliseconds_text(extremes.average),
           milliseconds_text(extremes.longest));
}

QString round_trips_json(const Endpoint &endpoint, int sent, const std::vector<double> &round_trips_ms) {
  QJsonArray all;
  for (const double round_trip : round_trips_ms)
    all += rounded(round_trip);
  QJsonObject object{{QStringLiteral("host"), endpoint.host},
                     {QStringLiteral("port"), int{endpoint.port}},
                     {QStringLiteral("sent"), sent},
                     {QStringLiteral("answered"), static_cast<int>(round_trips_ms.size())},
                     {QStringLiteral("round_trips_ms"), all},
                     {QStringLiteral("shortest_ms"), QJsonValue()},
                     {QStringLiteral("average_ms"), QJsonValue()},
                     {QStringLiteral("longest_ms"), QJsonValue()}};
  if (!round_trips_ms.empty()) {
    const Extremes extremes = extremes_of(round_trips_ms);
    object[QLatin1String("shortest_ms")] = rounded(extremes.shortest);
    object[QLatin1String("average_ms")] = rounded(extremes.average);
    object[QLatin1String("longest_ms")] = rounded(extremes.longest);
  }
  return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace buttondriver::buttonctl
