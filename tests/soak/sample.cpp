// SPDX-License-Identifier: Apache-2.0
#include "soak/sample.h"

#include <algorithm>
#include <fstream>

namespace buttondriver::soak {

double quantile(std::vector<double> values, double part) {
  if (values.empty())
    return 0;
  const auto place = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
  std::nth_element(values.begin(), values.begin() + place, values.end());
  return values[static_cast<std::size_t>(place)];
}

bool write_csv(const std::string &file, const std::vector<Sample> &samples) {
  std::ofstream csv(file);
  csv << "seconds,memory_kib,descriptors,unread_kib,unsent_kib,sent_mib,answers,median_ms,slowest_ms\n";
  for (const Sample &sample : samples)
    csv << sample.seconds << ',' << sample.memory_kib << ',' << sample.descriptors << ',' << sample.unread_kib << ','
        << sample.unsent_kib << ',' << sample.sent_mib << ',' << sample.answers << ',' << sample.median_ms << ','
        << sample.slowest_ms << '\n';
  return csv.flush().good();
}

} // namespace buttondriver::soak
