// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/testing/results/test_result.h"

#include <QByteArray>

#include <vector>

namespace buttondriver::buttonctl {

/// The results as JUnit XML, which services for continuous integration read: one suite with a case for each scenario,
/// named after its file. Times are in seconds.
QByteArray junit_report(const std::vector<TestResult> &results);

} // namespace buttondriver::buttonctl
