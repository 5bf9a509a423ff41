// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/types.h>

#include <cstddef>

/// For the tests of the event client only; not installed.
namespace buttondriver {

/// What the event client asks of the system. Each function behaves as its namesake, errno included.
struct EventClientCalls {
  int (*gettimeofday)(timeval *now, void *zone);
  int (*socket)(int domain, int type, int protocol);
  int (*connect)(int descriptor, const sockaddr *address, socklen_t size);
  ssize_t (*send)(int descriptor, const void *bytes, std::size_t count, int flags);
  int longest_wait_ms; ///< a connect or a send that takes longer has failed
};

/// The system's own functions and the client's usual patience.
EventClientCalls event_client_system_calls();

/// Uses `calls` from now on; `longest_wait_ms` counts for sockets opened later.
void replace_event_client_calls(const EventClientCalls &calls);

/// Closes the connection and returns to the state of a program that has just started, system calls included.
void reset_event_client();

} // namespace buttondriver
