// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/line_text.h"
#include "fpga/queue/fpga_task.h"
#include "fpga/shared_bytes.h"
#include "panel/formats/colour.h"
#include "panel/leds.h"
#include "panel/tft/image.h"
#include "panel/tft/text.h"
#include "panel/tft/tft.h"

#include <cstdint>
#include <string_view>
#include <utility>

/// The tasks that the facade queues. Arguments are kept as given; the panel layer checks them when the task runs and
/// prints what is wrong, and the worker goes on. Screen ids are 0, 1, 2, and -1 for all; colours are 0xRRGGBB.
namespace buttondriver {

/// `flag` true: white text on black; false: black on white.
class TextLineTask : public FPGATask {
public:
  TextLineTask(int screen_id, int line_id, std::string_view text, bool flag)
      : _screen_id(screen_id), _line_id(line_id), _flag(flag), _text(text) {}
  void execute() override {
    if (_flag)
      panel::tft_text_line(_screen_id, _line_id, _text.view(), panel::white, panel::black);
    else
      panel::tft_text_line_default(_screen_id, _line_id, _text.view());
  }
  std::size_t keptBytes() const override { return _text.size(); }
  TaskKind kind() const override { return TaskKind::text_line; }

private:
  int _screen_id;
  int _line_id;
  bool _flag;
  LineText _text;
};

class SubTextLineTask : public FPGATask {
public:
  SubTextLineTask(int screen_id, int line_id, int offset, int num_chars, std::string_view text,
                  std::uint32_t text_colour, std::uint32_t back_colour)
      : _screen_id(screen_id), _line_id(line_id), _offset(offset), _num_chars(num_chars), _text(text),
        _text_colour(text_colour), _back_colour(back_colour) {}
  void execute() override {
    panel::tft_sub_text_line(_screen_id, _line_id, _offset, _text.view(), _num_chars, _text_colour, _back_colour);
  }
  std::size_t keptBytes() const override { return _text.size(); }
  TaskKind kind() const override { return TaskKind::sub_text_line; }

private:
  int _screen_id;
  int _line_id;
  int _offset;
  int _num_chars;
  LineText _text;
  std::uint32_t _text_colour;
  std::uint32_t _back_colour;
};

class SetLEDButtonStateTask : public FPGATask {
public:
  SetLEDButtonStateTask(int led_id, int state) : _led_id(led_id), _state(state) {}
  void execute() override { panel::led_set_button_state(_led_id, static_cast<unsigned>(_state)); }
  TaskKind kind() const override { return TaskKind::button_led; }

private:
  int _led_id;
  int _state;
};

class SetLEDStatusIndicatorTask : public FPGATask {
public:
  SetLEDStatusIndicatorTask(int led_id, int state) : _led_id(led_id), _state(state) {}
  void execute() override { panel::led_set_status_indicator(_led_id, static_cast<unsigned>(_state)); }
  TaskKind kind() const override { return TaskKind::status_indicator; }

private:
  int _led_id;
  int _state;
};

class SetLEDToggleIndicatorTask : public FPGATask {
public:
  SetLEDToggleIndicatorTask(unsigned indicator, unsigned state) : _indicator(indicator), _state(state) {}
  void execute() override { panel::led_set_toggle_indicator(_indicator, _state); }
  TaskKind kind() const override { return TaskKind::toggle_indicator; }

private:
  unsigned _indicator;
  unsigned _state;
};

class BlackoutScreenTask : public FPGATask {
public:
  explicit BlackoutScreenTask(int screen_id) : _screen_id(screen_id) {}
  void execute() override { panel::tft_blackout(_screen_id); }
  TaskKind kind() const override { return TaskKind::blackout; }

private:
  int _screen_id;
};

/// Offsets in pixels; `bmp` are the bytes of a BMP file.
class DrawTFTImageTask : public FPGATask {
public:
  DrawTFTImageTask(int screen_id, int x_offset, int y_offset, SharedBytes bmp)
      : _screen_id(screen_id), _x_offset(x_offset), _y_offset(y_offset), _bmp(std::move(bmp)) {}
  void execute() override { panel::tft_draw_image(_screen_id, _x_offset, _y_offset, _bmp.view()); }
  std::size_t keptBytes() const override { return _bmp.keptBytes(); }
  TaskKind kind() const override { return TaskKind::image; }

private:
  int _screen_id;
  int _x_offset;
  int _y_offset;
  SharedBytes _bmp;
};

/// Intensity in percent.
class SetTFTIntensityTask : public FPGATask {
public:
  explicit SetTFTIntensityTask(int intensity) : _intensity(intensity) {}
  void execute() override { panel::tft_set_intensity(static_cast<unsigned>(_intensity)); }
  TaskKind kind() const override { return TaskKind::intensity; }

private:
  int _intensity;
};

} // namespace buttondriver
