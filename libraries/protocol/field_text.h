// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "catalogue.h"

#include <string>

namespace buttondriver {

/// What a field means, with its range and its named values: "0 to 23; -1: all buttons". Any thread may call.
std::string field_text(const Field &field);

} // namespace buttondriver
