// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

namespace buttondriver::yardsticks {

/// How much is measured. Runs of one more than a multiple of four have exact quartiles.
struct Scale {
  int runs;          ///< of each side, in turn
  int starts;        ///< of each program whose memory and start are measured
  int small_frames;  ///< status LEDs in a run
  int text_lines;    ///< in a run
  int pictures;      ///< in a run
  int pings;         ///< waited for one after the other in a run
  int drawings;      ///< text lines drawn in a run; a tenth as many pictures
  int connections;   ///< all that a daemon has open when it has many
  int other_replies; ///< of the other program, waited for one after the other in a run
};

/// What is measured, and with what.
struct Setting {
  std::string daemon; ///< its program
  std::string lcdd;   ///< LCDd's unpacked package, a folder; empty: it is left out
  Scale scale;
};

} // namespace buttondriver::yardsticks
