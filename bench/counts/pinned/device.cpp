// SPDX-License-Identifier: Apache-2.0
// Register transfers come here instead of the kernel and are done at once; but the first one lasts until the event loop
// has queued all that it was sent. Otherwise it would be chance how often the worker sleeps in between.

#include "counts/pinned/futex.h"
#include "counts/pinned/next_function.h"
#include "counts/pinned/state.h"
#include "panel/registers/transfer_record.h"

using namespace buttondriver::counts;

namespace {

int transfer() {
  while (state().is_armed && state().gate == gate::running)
    wait_while(state().gate, gate::running);
  count(Call::transfer);
  return 0;
}

} // namespace

BUTTONDRIVER_IN_FRONT_OF(int, ioctl, int descriptor, unsigned long request, void *argument) {
  if (request == buttondriver::panel::short_form_request)
    return transfer();
  using Function = int(int, unsigned long, void *);
  static Function *const next = next_function<Function>("ioctl");
  count(Call::other);
  return next(descriptor, request, argument);
}
