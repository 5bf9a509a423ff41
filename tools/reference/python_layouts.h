// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::documents {

/// The message layouts as a Python module, python/buttondriver/catalogue.py. It takes its types from the module beside
/// it, layout.py.
std::string python_layouts();

} // namespace buttondriver::documents
