// SPDX-License-Identifier: Apache-2.0
#include "support/device/recording_device.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>

namespace buttondriver::test {

namespace {

using panel::TransferRecord;

bool is_read(const TransferRecord &record, unsigned long request) {
  return request == panel::short_form_request ? (record.address_low & panel::short_form::read) != 0
                                              : (record.address_high & 0x4000) != 0;
}

unsigned address_of(const TransferRecord &record, unsigned long request) {
  if (request == panel::short_form_request)
    return record.address_low & panel::short_form::address_mask;
  return (unsigned{record.address_high} << 16 | record.address_low) & panel::long_form::address_mask;
}

template <class... Arguments> std::string format(const char *text, Arguments... arguments) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, text, arguments...);
  return buffer;
}

std::string to_line(const RecordingDevice::Transfer &transfer) {
  const bool read = is_read(transfer.record, transfer.request);
  std::string line = format("%c %04x %u", read ? 'r' : 'w', address_of(transfer.record, transfer.request),
                            unsigned{transfer.record.count});
  const auto &words = transfer.words;
  if (words.size() <= 4) {
    for (const unsigned word : words)
      line += format(" %04x", word);
  } else if (std::count(words.begin(), words.end(), words.front()) == static_cast<std::ptrdiff_t>(words.size())) {
    line += format(" %04x * %zu", unsigned{words.front()}, words.size());
  } else {
    line += " ...";
  }
  return line;
}

} // namespace

RecordingDevice::RecordingDevice() { panel::use_register_device(this); }

RecordingDevice::~RecordingDevice() { panel::use_register_device(nullptr); }

int RecordingDevice::open(const char *path) {
  opened_paths.emplace_back(path);
  return 42;
}

int RecordingDevice::transfer(int, unsigned long request, TransferRecord &record, std::uint16_t *words) {
  if (before_transfer)
    before_transfer(record);
  Transfer transfer{request, record, {}};
  if (!is_read(record, request)) {
    if (record.count == 1)
      transfer.words.push_back(static_cast<std::uint16_t>(record.value));
    else if (record.count > 1)
      transfer.words.assign(words, words + record.count);
  }
  const std::lock_guard lock(_mutex);
  _transfers.push_back(std::move(transfer));
  _grown.notify_all();
  return result;
}

std::vector<RecordingDevice::Transfer> RecordingDevice::take() {
  const std::lock_guard lock(_mutex);
  return std::exchange(_transfers, {});
}

std::vector<std::string> RecordingDevice::takeLines() {
  std::vector<std::string> lines;
  for (const Transfer &transfer : take())
    lines.push_back(to_line(transfer));
  return lines;
}

bool RecordingDevice::waitFor(std::size_t count) {
  std::unique_lock lock(_mutex);
  return _grown.wait_for(lock, std::chrono::seconds(10), [&] { return _transfers.size() >= count; });
}

} // namespace buttondriver::test
