// SPDX-License-Identifier: Apache-2.0
#include "tools/reference/dissector.h"
#include "tools/reference/protocol_manual.h"
#include "tools/reference/protocol_page.h"
#include "tools/reference/python_layouts.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace documents = buttondriver::documents;

/// The exit status.
int update_limits(const char *file) {
  std::ifstream old(file, std::ios::binary);
  const std::string page{std::istreambuf_iterator<char>(old), {}};
  const auto updated = documents::with_limits(page);
  if (!updated) {
    std::fprintf(stderr, "protocol_reference: there are no marks of the limits in %s\n", file);
    return 1;
  }
  std::ofstream renewed(file, std::ios::binary);
  renewed << *updated << std::flush;
  return renewed ? 0 : 1;
}

} // namespace

/// Prints the reference page of the protocol; with --manual that for a terminal, with --dissector the dissector for
/// Wireshark, with --python the layouts as a Python module. With --limits it renews the limits in a manual page.
int main(int argc, char **argv) {
  std::string text;
  if (argc == 1)
    text = documents::protocol_page();
  else if (argc == 2 && std::strcmp(argv[1], "--manual") == 0)
    text = documents::protocol_manual();
  else if (argc == 2 && std::strcmp(argv[1], "--dissector") == 0)
    text = documents::wireshark_dissector();
  else if (argc == 2 && std::strcmp(argv[1], "--python") == 0)
    text = documents::python_layouts();
  else if (argc == 3 && std::strcmp(argv[1], "--limits") == 0)
    return update_limits(argv[2]);
  else {
    std::fputs("usage: protocol_reference [--manual | --dissector | --python | --limits PAGE]\n", stderr);
    return 2;
  }
  const bool written = std::fputs(text.c_str(), stdout) >= 0 && std::fflush(stdout) == 0;
  return written ? 0 : 1;
}
