// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>

namespace buttondriver {

class FPGA;

/// One button of the panel.
class IButton {
public:
  virtual ~IButton() = default;

  /// Sets the LED; the work is queued. 1 is on, all else off.
  virtual void setState(std::int32_t state) = 0;
  virtual std::int32_t id() const = 0;
  /// Whether the button takes an image. `image` is not looked at.
  virtual bool setImage(const void *image) = 0;
  /// Does nothing on the panels there are.
  virtual void refresh() = 0;
};

/// The buttons by ascending id, 0 to 23. Whoever fills a map owns its buttons; copies do not.
using ButtonMap = std::map<std::int32_t, IButton *>;

/// What all buttons have in common.
class Button : public IButton {
public:
  Button(bool flag, std::int32_t id, FPGA *fpga);

  std::int32_t id() const override { return _id; }
  bool setImage(const void *image) override;
  void refresh() override {}

protected:
  FPGA *fpga() const { return _fpga; }

private:
  bool _flag;
  std::int32_t _id;
  FPGA *_fpga;
};

/// A button with a one-colour LED. `fpga` outlives it.
class Button_RV1000E : public Button {
public:
  using Button::Button;
  void setState(std::int32_t state) override;
};

} // namespace buttondriver
