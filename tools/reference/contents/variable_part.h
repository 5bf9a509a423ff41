// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "protocol/catalogue.h"

namespace buttondriver::documents {

/// What follows the head of a message that counts something.
struct VariablePart {
  const char *field;
  const char *meaning;
};

/// Only for a type that counts something.
constexpr VariablePart variable_part(Counted counted) {
  switch (counted) {
  case Counted::text_bytes:
    return {"text", "the text in Latin-1 and its terminating NUL"};
  case Counted::image_bytes:
    return {"image", "the picture"};
  case Counted::image_ids:
    return {"image_ids", "the ids in the order given"};
  case Counted::nothing:
    break;
  }
  return {"", ""};
}

} // namespace buttondriver::documents
