// SPDX-License-Identifier: Apache-2.0
#include "soak/load/frames.h"

#include <cstdint>
#include <initializer_list>

namespace buttondriver::soak {

namespace {

void append_word(std::string &bytes, std::uint32_t word) {
  for (const unsigned shift : {24U, 16U, 8U, 0U})
    bytes += static_cast<char>(word >> shift & 0xFFU);
}

std::string frame(std::initializer_list<std::uint32_t> words, const std::string &rest = {}) {
  std::string bytes;
  append_word(bytes, static_cast<std::uint32_t>(words.size() * 4 + rest.size()));
  for (const std::uint32_t word : words)
    append_word(bytes, word);
  return bytes + rest;
}

std::string with_nul(const std::string &text) { return text + '\0'; }

} // namespace

std::string ping_frame() { return frame({12}); }

std::string reconfig_frame() { return frame({10, 0}); }

std::string picture_head(std::uint32_t side) {
  std::string head = "BM";
  head.resize(54);
  head[10] = 54;
  head[14] = 40;
  head[18] = static_cast<char>(side);
  head[22] = static_cast<char>(side);
  head[26] = 1;
  head[28] = 24;
  return head;
}

std::string picture_frame(std::uint32_t side) {
  std::string bmp = picture_head(side);
  bmp += std::string(std::size_t{3} * side * side, '\x5A');
  return frame({19, 1, 0, 0, static_cast<std::uint32_t>(bmp.size())}, bmp);
}

std::string text_line_frames() {
  std::string frames;
  const std::string text = with_nul("0123456789abcdef");
  for (std::uint32_t i = 0; i < 24; ++i)
    frames += frame({15, i % 3, i / 3, i % 2, static_cast<std::uint32_t>(text.size())}, text);
  return frames;
}

std::string status_led_frame(std::uint32_t led, std::uint32_t state) { return frame({21, led, state}); }

std::string blink_frame(std::uint32_t button, std::uint32_t half_period_ms) {
  constexpr std::uint32_t blink = 0xFFFFFFFF;
  return frame({17, button, blink, half_period_ms});
}

std::string many_small_frames() {
  std::string frames;
  for (std::uint32_t i = 0; i < 24; ++i) {
    const std::string text = with_nul("Soaking, line " + std::to_string(i));
    const auto size = static_cast<std::uint32_t>(text.size());
    frames += frame({15, i % 3, i % 8, i % 2, size}, text);
    frames += frame({18, i % 3, i % 8, i % 5, 6, 0xFF0000, 0x00FF00, size}, text);
    frames += frame({17, i, i % 2, 0});
    frames += frame({21, i, i % 2});
    frames += frame({22, i % 2, i / 2 % 2});
    frames += frame({17, i, 0xFFFFFFFF, 40});
  }
  frames += frame({16, 0xFFFFFFFF});
  frames += frame({6, 7, 120}, std::string(120, '\x33'));
  frames += frame({99});
  frames += frame({0});
  return frames;
}

} // namespace buttondriver::soak
