// SPDX-License-Identifier: Apache-2.0
// Picture files.
//
// Input, from the end: the screen (one byte, signed), column and row of its corner (four bytes each, signed), the limit
// of pixels (two bytes). In front of them: the file.
#include "fuzz/fuzz_target.h"
#include "fuzz/support/checked_panel.h"
#include "fuzz/support/input.h"
#include "fuzz/support/quiet.h"
#include "fuzz/support/require.h"
#include "panel/formats/bmp.h"
#include "panel/panel_lib.h"
#include "panel/tft/image.h"

#include <algorithm>
#include <limits>

namespace buttondriver::fuzz {

namespace {

/// Larger pictures are decoded with a limit only, to be quick.
constexpr std::int64_t most_pixels = 1 << 16;

struct Rig {
  Rig() {
    drop_standard_output();
    panel::panel_lib_init();
  }
  ~Rig() { panel::panel_lib_done(); }

  CheckedPanel device;
};

struct Picture {
  std::int32_t width = 0;
  std::int32_t height = 0;
  panel::PixelArray pixels;
  int result = 0;

  std::int64_t count() const { return std::int64_t{width} * height; }
};

Picture decode(ByteView bmp, std::size_t limit) {
  Picture picture;
  picture.result = panel::bmp_decode_24(bmp, &picture.width, &picture.height, &picture.pixels, limit);
  if (picture.result == 0)
    require(picture.width >= 0 && picture.height >= 0 && picture.pixels, "a decoded picture has a size and pixels");
  else
    require(picture.result == -1 && !picture.pixels, "a picture that is refused has no pixels");
  return picture;
}

void run(const Rig &rig, Input input) {
  const auto screen = input.number<std::int8_t>();
  const auto x = input.number<std::int32_t>();
  const auto y = input.number<std::int32_t>();
  const std::size_t limit = input.number<std::uint16_t>();
  const std::vector<std::uint8_t> file = input.rest();
  const ByteView bmp(file.data(), file.size());

  panel::BmpHeader header{};
  const int usable = panel::bmp_check_header(bmp, &header);
  panel::bmp_print_header(bmp);
  const Picture beginning = decode(bmp, limit);
  require(usable == 0 || beginning.result == -1, "no picture is decoded after a header that is refused");
  if (beginning.result == 0 && beginning.count() <= most_pixels) {
    const Picture whole = decode(bmp, std::numeric_limits<std::size_t>::max());
    const auto same =
        static_cast<std::ptrdiff_t>(std::min<std::int64_t>(whole.count(), static_cast<std::int64_t>(limit)));
    require(whole.width == beginning.width && whole.height == beginning.height &&
                std::equal(whole.pixels.get(), whole.pixels.get() + same, beginning.pixels.get()),
            "a limit cuts the pixels off and changes nothing else");
  }
  const bool is_drawn = panel::tft_draw_image(screen, x, y, bmp) == 0;
  require(is_drawn == (beginning.result == 0 && screen >= -1 && screen <= 2),
          "what can be decoded is drawn on every screen there is");
  rig.device.require_whole_windows();
}

} // namespace

} // namespace buttondriver::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const buttondriver::fuzz::Rig rig;
  buttondriver::fuzz::run(rig, {data, size});
  return 0;
}
