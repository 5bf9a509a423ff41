// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "files/owned_descriptor.h"

#include <cstdio>
#include <memory>

namespace buttondriver {

struct CloseFile {
  void operator()(std::FILE *file) const { std::fclose(file); }
};

/// Owns a file of stdio and closes it at its end.
using OwnedFile = std::unique_ptr<std::FILE, CloseFile>;

/// The file of stdio that reads and writes `descriptor`; `mode` as for std::fopen. Null, with the reason in errno, when
/// there is no such file; the descriptor is then closed.
inline OwnedFile file_of(OwnedDescriptor descriptor, const char *mode) {
  OwnedFile file(::fdopen(descriptor.get(), mode));
  if (file)
    descriptor.release();
  return file;
}

} // namespace buttondriver
