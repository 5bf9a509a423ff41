// SPDX-License-Identifier: Apache-2.0
// Measures what a loop takes, and when the run started and ended.
#include <buttondriver/stopwatch/stopwatch.h>

// A clock that goes on by 20 ms each time that it is read, so that this program always prints the same. Without it, a
// StopWatch takes the time of the machine.
static int made_up_time(timeval &time) {
  static long milliseconds = 0;
  milliseconds += 20;
  time.tv_sec = milliseconds / 1000;
  time.tv_usec = milliseconds % 1000 * 1000;
  return 0;
}

int main() {
  stopwatch::StopWatch watch(10, "", false, made_up_time);
  stopwatch::Event *run =
      watch.addEvent("run", "the whole program", stopwatch::time_stamp_event, stopwatch::log_to_standard_output);
  stopwatch::Event *draw =
      watch.addEvent("draw", "one screen", stopwatch::delta_event, stopwatch::log_to_standard_output);
  run->start();
  for (int screen = 0; screen < 3; ++screen) {
    draw->start();
    draw->stop();
  }
  run->stop();
  watch.reportAll();
  return 0;
}
