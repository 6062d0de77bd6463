// SIGILL: the signal by which SVE words reach the runtime, and the
// application's view of it.
#pragma once

#include <signal.h>

// The C library's own functions behind the ones the runtime wraps.
struct libc_functions {
  int (*sigaction)(int, const struct sigaction*, struct sigaction*);
  int (*pthread_sigmask)(int, const sigset_t*, sigset_t*);
  int (*sigprocmask)(int, const sigset_t*, sigset_t*);
};
extern libc_functions libc;
void resolve_libc_functions();

// Installs the runtime's SIGILL handler.
void take_sigill();
// The application's SIGILL disposition, kept apart from the real one.
void application_sigill_action(const struct sigaction* act, struct sigaction* old);
