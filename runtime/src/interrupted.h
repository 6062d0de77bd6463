// An application's signal handler runs whenever its signal comes: in the
// application's own code, in a site's stub, inside a fragment, or in the
// middle of an emulation call. The handler may run SVE code itself, which
// uses the same thread block, register record and runtime stack as the code
// it interrupted; these are kept for the interrupted code, as a kernel keeps
// the registers, Z, P and FFR included, in its signal frame.
#pragma once

#include <signal.h>
#include <stdint.h>
#include <ucontext.h>

struct rt_thread;

// Calls the handler of action for sig, with the thread's state kept around
// it, and with app_tp as its thread pointer unless that is 0. A handler that
// leaves by siglongjmp abandons what it interrupted; the room that state
// held is taken back at the thread's next handler.
void call_application_handler(const struct sigaction& action, int sig, siginfo_t* info,
                              ucontext_t* uc, uint64_t app_tp);
// Forgets the states of handlers the thread has left by siglongjmp: it is
// now at app_sp, in a frame at frame (the runtime's handler's), both above
// where those handlers began. Until then the thread counts as inside what
// they interrupted, and retired code's rooms wait for it.
void drop_abandoned(rt_thread* t, uintptr_t app_sp, uintptr_t frame);
// The thread's saved states go with it.
void release_interrupted_states(rt_thread* t);
