// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "buttonctl/doctor/checks/finding.h"
#include "buttonctl/doctor/facts/service_facts.h"

#include <QString>
#include <QStringList>

namespace buttondriver::buttonctl {

/// Whether there is a service that starts the daemon. It is no fault when there is none: somebody else may start it.
Finding check_service(const ServiceFacts &service);

/// Which version the daemon's program is, and whether that is `own_version`. The program is the one that the service
/// starts, or else the first of its name in `search_path`, under the folder `root`.
Finding check_program(const ServiceFacts &service, const QString &root, const QStringList &search_path,
                      const QString &own_version);

} // namespace buttondriver::buttonctl
