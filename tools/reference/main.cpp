// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/dissector.h"
#include "tools/reference/protocol_page.h"
#include "tools/reference/python_layouts.h"

#include <cstdio>
#include <cstring>
#include <string>

/// Prints the reference page of the protocol; with --dissector the dissector for Wireshark, with --python the layouts
/// as a Python module.
int main(int argc, char **argv) {
  namespace documents = buttondriver::documents;
  std::string text;
  if (argc == 1)
    text = documents::protocol_page();
  else if (argc == 2 && std::strcmp(argv[1], "--dissector") == 0)
    text = documents::wireshark_dissector();
  else if (argc == 2 && std::strcmp(argv[1], "--python") == 0)
    text = documents::python_layouts();
  else {
    std::fputs("usage: protocol_reference [--dissector | --python]\n", stderr);
    return 2;
  }
  const bool written = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  return written ? 0 : 1;
}
