// SPDX-License-Identifier: Apache-2.0
#include "simulator/app/page_opening.h"

#include "simulator/notices/notices.h"

namespace buttondriver::simulator {

bool open_page(WebPage &page, const Options &options) {
  if (!options.http)
    return true;
  const auto opened = page.listen(*options.http);
  if (opened) {
    tell("buttondriver-sim: page on %s\n", page.address().toLatin1().constData());
    return true;
  }
  const QString wanted = page_address(options.http->address, options.http->port);
  tell_fault("buttondriver-sim: no web page on %s: %s\n", wanted.toLatin1().constData(),
             opened.failure().text.toLocal8Bit().constData());
  return !options.http_is_asked_for;
}

} // namespace buttondriver::simulator
