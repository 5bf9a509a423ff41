// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace buttondriver {

/// Makes the process independent of where it was started, as a daemon should be: no environment variable of Qt's acts
/// on it, the Qt message channel goes to standard error, it may open as many descriptors as the system lets it, and a
/// log whose reader has gone is a failed write and not the end. Called first in main, before there is a
/// QCoreApplication.
void prepare_process();

} // namespace buttondriver
