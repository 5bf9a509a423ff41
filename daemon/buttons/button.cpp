// SPDX-License-Identifier: Apache-2.0
#include "buttons/button.h"

#include "fpga/fpga.h"

namespace buttondriver {

Button::Button(bool flag, std::int32_t id, FPGA *fpga) : _flag(flag), _id(id), _fpga(fpga) {}

bool Button::setImage(const void *) { return !_flag; }

void Button_RV1000E::setState(std::int32_t state) { fpga()->setLEDButtonState(id(), state); }

} // namespace buttondriver
