// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/dissector.h"
#include "tools/reference/protocol_page.h"

#include <cstdio>
#include <cstring>

/// Prints the reference page of the protocol, or, with --dissector, the dissector for Wireshark.
int main(int argc, char **argv) {
  const bool wants_dissector = argc == 2 && std::strcmp(argv[1], "--dissector") == 0;
  if (argc > 1 && !wants_dissector) {
    std::fputs("usage: protocol_reference [--dissector]\n", stderr);
    return 2;
  }
  const std::string text =
      wants_dissector ? buttondriver::documents::wireshark_dissector() : buttondriver::documents::protocol_page();
  const bool written = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  return written ? 0 : 1;
}
