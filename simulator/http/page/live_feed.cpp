// SPDX-License-Identifier: Apache-2.0
#include "simulator/http/page/live_feed.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace buttondriver::simulator {

LiveFeed::LiveFeed(Simulation &simulation) : _simulation(simulation) {
  _timer.setInterval(interval_ms);
  connect(&_timer, &QTimer::timeout, this, &LiveFeed::look);
}

LiveFeed::~LiveFeed() = default;

void LiveFeed::add(std::unique_ptr<QWebSocket> socket) {
  if (_pages.size() == most_pages) {
    socket->close(QWebSocketProtocol::CloseCodePolicyViolated, QStringLiteral("too many pages"));
    return;
  }
  Daemon *const daemon = _simulation.daemon();
  auto page = std::make_unique<PageSession>(std::move(socket),
                                            daemon ? std::optional<quint16>(daemon->server().port()) : std::nullopt);
  connect(page.get(), &PageSession::ended, this, [this, ended = page.get()] { forget(ended); });
  _pages.push_back(std::move(page));
  if (!_timer.isActive())
    _timer.start();
}

void LiveFeed::look() {
  // Most pages stand at the same place: what has been gathered from there is gathered once.
  std::optional<FeedPosition> from;
  LiveUpdate update;
  const Entries entries = _looks_to_entries == 0 ? Entries::taken : Entries::left;
  if (_looks_to_entries > 0)
    --_looks_to_entries;
  for (const auto &page : _pages) {
    if (!page->isReady())
      continue;
    if (!from || !(*from == page->position())) {
      from = page->position();
      update = gather_update(_simulation, *from, entries);
      // What a page that has just come is told is nothing that happens now.
      if (update.entry_count > 0 && !from->is_new)
        _looks_to_entries =
            std::max(fewest_looks_without_entries, update.entry_count * most_looks_without_entries / most_entries);
    }
    page->send(update);
  }
}

void LiveFeed::forget(PageSession *page) {
  const auto place =
      std::find_if(_pages.begin(), _pages.end(), [page](const auto &candidate) { return candidate.get() == page; });
  if (place == _pages.end())
    return;
  // It is still calling, so it goes a little later.
  _ended.push_back(std::move(*place));
  QTimer::singleShot(0, this, [this] { _ended.clear(); });
  _pages.erase(place);
  if (_pages.empty())
    _timer.stop();
}

} // namespace buttondriver::simulator
