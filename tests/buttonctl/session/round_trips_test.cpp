// SPDX-License-Identifier: Apache-2.0
#include "buttonctl/session/round_trips.h"

#include <gtest/gtest.h>

namespace buttondriver::buttonctl {
namespace {

Endpoint endpoint() {
  Endpoint endpoint;
  endpoint.host = QStringLiteral("panel");
  endpoint.port = 4000;
  return endpoint;
}

TEST(RoundTripsTest, are_told_in_words) {
  EXPECT_EQ(round_trips_text({0.25, 1.5, 0.5}).toStdString(),
            "3 answers: shortest 0.250 ms, average 0.750 ms, longest 1.500 ms");
}

TEST(RoundTripsTest, are_told_as_json_in_whole_microseconds) {
  EXPECT_EQ(round_trips_json(endpoint(), 3, {0.2504, 1.5, 0.4999}).toStdString(),
            R"({"answered":3,"average_ms":0.75,"host":"panel","longest_ms":1.5,"port":4000,)"
            R"("round_trips_ms":[0.25,1.5,0.5],"sent":3,"shortest_ms":0.25})");
  EXPECT_EQ(round_trips_json(endpoint(), 2, {1}).toStdString(),
            R"({"answered":1,"average_ms":1,"host":"panel","longest_ms":1,"port":4000,)"
            R"("round_trips_ms":[1],"sent":2,"shortest_ms":1})");
  EXPECT_EQ(round_trips_json(endpoint(), 0, {}).toStdString(),
            R"({"answered":0,"average_ms":null,"host":"panel","longest_ms":null,"port":4000,)"
            R"("round_trips_ms":[],"sent":0,"shortest_ms":null})");
}

} // namespace
} // namespace buttondriver::buttonctl
