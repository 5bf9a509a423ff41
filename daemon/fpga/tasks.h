// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "fpga/fpga_task.h"
#include "fpga/shared_bytes.h"

#include <cstdint>
#include <string>

/// The tasks that the facade queues. Arguments are kept as given; the panel layer checks them when the task runs and
/// prints what is wrong, and the worker goes on. Screen ids are 0, 1, 2, and -1 for all; colours are 0xRRGGBB.
namespace buttondriver {

/// `flag` true: white text on black; false: black on white.
class TextLineTask : public FPGATask {
public:
  TextLineTask(int screen_id, int line_id, std::string text, bool flag);
  void execute() override;
  std::size_t keptBytes() const override { return _text.size(); }

private:
  int _screen_id;
  int _line_id;
  std::string _text;
  bool _flag;
};

class SubTextLineTask : public FPGATask {
public:
  SubTextLineTask(int screen_id, int line_id, int offset, int num_chars, std::string text, std::uint32_t text_colour,
                  std::uint32_t back_colour);
  void execute() override;
  std::size_t keptBytes() const override { return _text.size(); }

private:
  int _screen_id;
  int _line_id;
  int _offset;
  int _num_chars;
  std::string _text;
  std::uint32_t _text_colour;
  std::uint32_t _back_colour;
};

class SetLEDButtonStateTask : public FPGATask {
public:
  SetLEDButtonStateTask(int led_id, int state);
  void execute() override;

private:
  int _led_id;
  int _state;
};

class SetLEDStatusIndicatorTask : public FPGATask {
public:
  SetLEDStatusIndicatorTask(int led_id, int state);
  void execute() override;

private:
  int _led_id;
  int _state;
};

class SetLEDToggleIndicatorTask : public FPGATask {
public:
  SetLEDToggleIndicatorTask(unsigned indicator, unsigned state);
  void execute() override;

private:
  unsigned _indicator;
  unsigned _state;
};

class BlackoutScreenTask : public FPGATask {
public:
  explicit BlackoutScreenTask(int screen_id);
  void execute() override;

private:
  int _screen_id;
};

/// Offsets in pixels; `bmp` are the bytes of a BMP file.
class DrawTFTImageTask : public FPGATask {
public:
  DrawTFTImageTask(int screen_id, int x_offset, int y_offset, SharedBytes bmp);
  void execute() override;
  std::size_t keptBytes() const override { return _bmp.keptBytes(); }

private:
  int _screen_id;
  int _x_offset;
  int _y_offset;
  SharedBytes _bmp;
};

/// Intensity in percent.
class SetTFTIntensityTask : public FPGATask {
public:
  explicit SetTFTIntensityTask(int intensity);
  void execute() override;

private:
  int _intensity;
};

} // namespace buttondriver
