// SPDX-License-Identifier: Apache-2.0
#include "fleet/panels/panel_fleet.h"

#include "fleet/panels/delays.h"
#include "protocol/framing.h"
#include "protocol/records.h"

#include <algorithm>
#include <stdexcept>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <utility>

namespace buttondriver::fleet {

namespace {

constexpr std::uint64_t end_mark = ~std::uint64_t{0};
/// Of an event: which panel, and whether it is its connection or its listener.
constexpr std::uint64_t mark_of(std::size_t panel, bool is_connection) { return panel * 2 + (is_connection ? 1 : 0); }

/// What is longer than any message is not followed.
constexpr std::uint32_t most_message_bytes = 16 * 1024 * 1024;

constexpr char ping_reply[] = {0, 0, 0, 4, 0, 0, 0, BMS_PingReply::code};

} // namespace

PanelFleet::PanelFleet(std::size_t count)
    : _panels(count), _epoll(::epoll_create1(EPOLL_CLOEXEC)), _end(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  watch(_end, end_mark);
  for (std::size_t i = 0; i < count; ++i)
    switchOn(i);
  _thread = std::thread([this] { run(); });
}

PanelFleet::~PanelFleet() {
  ::eventfd_write(_end.get(), 1);
  _thread.join();
}

void PanelFleet::watch(const OwnedDescriptor &descriptor, std::uint64_t mark) const {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.u64 = mark;
  if (::epoll_ctl(_epoll.get(), EPOLL_CTL_ADD, descriptor.get(), &event) != 0)
    throw std::runtime_error("there are no descriptors for so many panels");
}

void PanelFleet::switchOff(std::size_t index) {
  const std::lock_guard lock(_mutex);
  Panel &panel = _panels[index];
  panel.listener.reset();
  endConnection(panel);
  panel.state = {};
}

void PanelFleet::endConnection(Panel &panel) {
  if (panel.connection)
    --_counts.connected;
  panel.connection.reset();
  panel.unread.clear();
}

void PanelFleet::switchOn(std::size_t index) {
  const std::lock_guard lock(_mutex);
  Panel &panel = _panels[index];
  if (panel.listener)
    return;
  panel.listener = panel.port.listen();
  watch(panel.listener, mark_of(index, false));
}

PanelFleet::Counts PanelFleet::counts() const {
  const std::lock_guard lock(_mutex);
  return _counts;
}

PanelState PanelFleet::state(std::size_t panel) const {
  const std::lock_guard lock(_mutex);
  return _panels[panel].state;
}

bool PanelFleet::waitUntil(const std::function<bool()> &is_so, std::chrono::seconds limit) const {
  std::unique_lock lock(_mutex);
  return _something_happened.wait_for(lock, limit, is_so);
}

std::size_t PanelFleet::differFrom(const std::vector<PanelState> &wanted) const {
  const std::lock_guard lock(_mutex);
  std::size_t count = 0;
  for (std::size_t i = 0; i < _panels.size(); ++i)
    count += _panels[i].state == wanted[i] ? 0 : 1;
  return count;
}

std::vector<std::int64_t> PanelFleet::takeAges() {
  const std::lock_guard lock(_mutex);
  return std::exchange(_ages, {});
}

void PanelFleet::run() {
  std::array<epoll_event, 256> events;
  for (;;) {
    const int count = ::epoll_wait(_epoll.get(), events.data(), static_cast<int>(events.size()), -1);
    const std::lock_guard lock(_mutex);
    for (int i = 0; i < count; ++i) {
      const std::uint64_t mark = events[static_cast<std::size_t>(i)].data.u64;
      if (mark == end_mark)
        return;
      const auto index = static_cast<std::size_t>(mark / 2);
      if (mark == mark_of(index, false))
        accept(index);
      else
        read(_panels[index]);
    }
    _something_happened.notify_all();
  }
}

/// The panel may have been switched off since the event came: then there is nobody.
void PanelFleet::accept(std::size_t index) {
  Panel &panel = _panels[index];
  OwnedDescriptor connection(::accept4(panel.listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
  if (!connection)
    return;
  if (!panel.connection)
    ++_counts.connected;
  panel.connection = out_of_the_way(std::move(connection));
  panel.unread.clear();
  watch(panel.connection, mark_of(index, true));
}

void PanelFleet::read(Panel &panel) {
  char bytes[16 * 1024];
  const ssize_t count = ::recv(panel.connection.get(), bytes, sizeof bytes, 0);
  if (count < 0 && (errno == EAGAIN || errno == EBADF))
    return;
  if (count <= 0)
    return endConnection(panel);
  // As a rule whole frames come, and nothing waits.
  const bool is_continued = !panel.unread.empty();
  if (is_continued)
    panel.unread.append(bytes, static_cast<std::size_t>(count));
  ByteView rest = is_continued ? ByteView(panel.unread.data(), panel.unread.size())
                               : ByteView(bytes, static_cast<std::size_t>(count));
  FrameHead head = frame_head(rest, rest.size());
  for (; head.is_complete && head.length <= most_message_bytes; head = frame_head(rest, rest.size())) {
    take(panel, {rest.data() + frame_prefix_size, head.length});
    rest = rest.from(head.bytes_needed);
  }
  if (head.length > most_message_bytes)
    return endConnection(panel);
  panel.unread = std::string(reinterpret_cast<const char *>(rest.data()), rest.size());
}

void PanelFleet::take(Panel &panel, ByteView message) {
  const std::uint32_t opcode = message.bigEndian32(0);
  ++_counts.messages[std::min<std::size_t>(opcode, most_opcodes)];
  // What has no room is lost: whoever never reads gets no answers.
  if (opcode == BMS_Ping::code)
    ::send(panel.connection.get(), ping_reply, sizeof ping_reply, MSG_NOSIGNAL);
  panel.state.take(message);
  if (opcode == BMS_TFTTextLine::code) {
    const std::uint32_t head_size = type_of<BMS_TFTTextLine>.head_size;
    if (const auto age = age_of(message.text(head_size, message.bigEndian32(head_size - 4))))
      _ages.push_back(*age);
  }
}

} // namespace buttondriver::fleet
