// signal() as the C library defines it, in terms of sigaction: the C
// library's own signal() calls its sigaction internally, past any
// interposed symbol, so whoever stands in front of sigaction must stand in
// front of signal too.
#pragma once

#include <signal.h>

inline sighandler_t signal_by_sigaction(int sig, sighandler_t handler) {
  struct sigaction act, old;
  act.sa_handler = handler;
  act.sa_flags = SA_RESTART;
  sigemptyset(&act.sa_mask);
  sigaddset(&act.sa_mask, sig);
  if (sigaction(sig, &act, &old) != 0) return SIG_ERR;
  return old.sa_handler;
}
