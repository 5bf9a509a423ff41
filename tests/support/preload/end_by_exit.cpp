// SPDX-License-Identifier: Apache-2.0
// Preloaded into a program under test where it is counted what the tests reach: the program writes its counts when it
// ends by exit(), which one that runs until it is ended never does. Whoever has a handler of his own keeps it.

#include <csignal>
#include <cstdlib>

namespace {

// Not allowed in a handler, for good reasons; nearly always the program waits for events, and else it is killed.
void end(int) { std::exit(0); }

__attribute__((constructor)) void end_by_exit() { std::signal(SIGTERM, end); }

} // namespace
