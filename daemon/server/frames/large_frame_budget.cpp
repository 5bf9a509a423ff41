// SPDX-License-Identifier: Apache-2.0
#include "server/frames/large_frame_budget.h"

#include <utility>

namespace buttondriver {

bool LargeFrameBudget::Share::grow(qint64 bytes) {
  if (_budget->_favoured != this && bytes <= _budget->_free) {
    _budget->_free -= bytes;
    _shared += bytes;
    _size += bytes;
    return true;
  }
  const auto now = _budget->_clock();
  if (_budget->_favoured != this) {
    if (_budget->_favoured) {
      if (now - _budget->_last_growth < limits::large_frame_patience)
        return false;
      Share *const dallying = _budget->_favoured;
      dallying->release();
      dallying->_when_lost();
    }
    _budget->_favoured = this;
  }
  _budget->_last_growth = now;
  _size += bytes;
  return true;
}

void LargeFrameBudget::Share::release() {
  _budget->_free += std::exchange(_shared, 0);
  _size = 0;
  if (_budget->_favoured == this)
    _budget->_favoured = nullptr;
}

} // namespace buttondriver
