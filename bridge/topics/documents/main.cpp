// SPDX-License-Identifier: Apache-2.0
#include "bridge/topics/documents/topics_page.h"

#include <cstdio>

/// Prints the page of topics.
int main() {
  const std::string page = buttondriver::bridge::topics_page();
  return std::fwrite(page.data(), 1, page.size(), stdout) == page.size() ? 0 : 1;
}
