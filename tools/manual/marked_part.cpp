// SPDX-License-Identifier: Apache-2.0
#include "tools/manual/marked_part.h"

namespace buttondriver::manual {

std::optional<std::string> with_part(const std::string &page, const std::string &name, const std::string &text) {
  const std::size_t first_mark = page.find("\n.\\\" begin " + name + ':');
  if (first_mark == std::string::npos)
    return std::nullopt;
  const std::size_t begin = page.find('\n', first_mark + 1);
  const std::size_t end = page.find("\n.\\\" end " + name + '\n', begin);
  if (begin == std::string::npos || end == std::string::npos)
    return std::nullopt;
  return page.substr(0, begin + 1) + text + page.substr(end + 1);
}

} // namespace buttondriver::manual
