// SPDX-License-Identifier: Apache-2.0
#include "fpga/tasks.h"

#include "panel/formats/colour.h"
#include "panel/leds.h"
#include "panel/tft/image.h"
#include "panel/tft/text.h"
#include "panel/tft/tft.h"

#include <utility>

namespace buttondriver {

TextLineTask::TextLineTask(int screen_id, int line_id, std::string text, bool flag)
    : _screen_id(screen_id), _line_id(line_id), _text(std::move(text)), _flag(flag) {}

void TextLineTask::execute() {
  if (_flag)
    panel::tft_text_line(_screen_id, _line_id, _text, panel::white, panel::black);
  else
    panel::tft_text_line_default(_screen_id, _line_id, _text);
}

SubTextLineTask::SubTextLineTask(int screen_id, int line_id, int offset, int num_chars, std::string text,
                                 std::uint32_t text_colour, std::uint32_t back_colour)
    : _screen_id(screen_id), _line_id(line_id), _offset(offset), _num_chars(num_chars), _text(std::move(text)),
      _text_colour(text_colour), _back_colour(back_colour) {}

void SubTextLineTask::execute() {
  panel::tft_sub_text_line(_screen_id, _line_id, _offset, _text, _num_chars, _text_colour, _back_colour);
}

SetLEDButtonStateTask::SetLEDButtonStateTask(int led_id, int state) : _led_id(led_id), _state(state) {}

void SetLEDButtonStateTask::execute() { panel::led_set_button_state(_led_id, static_cast<unsigned>(_state)); }

SetLEDStatusIndicatorTask::SetLEDStatusIndicatorTask(int led_id, int state) : _led_id(led_id), _state(state) {}

void SetLEDStatusIndicatorTask::execute() { panel::led_set_status_indicator(_led_id, static_cast<unsigned>(_state)); }

SetLEDToggleIndicatorTask::SetLEDToggleIndicatorTask(unsigned indicator, unsigned state)
    : _indicator(indicator), _state(state) {}

void SetLEDToggleIndicatorTask::execute() { panel::led_set_toggle_indicator(_indicator, _state); }

BlackoutScreenTask::BlackoutScreenTask(int screen_id) : _screen_id(screen_id) {}

void BlackoutScreenTask::execute() { panel::tft_blackout(_screen_id); }

DrawTFTImageTask::DrawTFTImageTask(int screen_id, int x_offset, int y_offset, SharedBytes bmp)
    : _screen_id(screen_id), _x_offset(x_offset), _y_offset(y_offset), _bmp(std::move(bmp)) {}

void DrawTFTImageTask::execute() { panel::tft_draw_image(_screen_id, _x_offset, _y_offset, _bmp.view()); }

SetTFTIntensityTask::SetTFTIntensityTask(int intensity) : _intensity(intensity) {}

void SetTFTIntensityTask::execute() { panel::tft_set_intensity(static_cast<unsigned>(_intensity)); }

} // namespace buttondriver
