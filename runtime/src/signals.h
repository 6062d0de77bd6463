// The signals the runtime owns: SIGILL, by which SVE words reach it, and
// SIGSEGV and SIGBUS, which the client's handlers take for faults in
// emulated memory instructions. The application keeps its own view of all
// three.
#pragma once

#include <cstdint>

#include <signal.h>
#include <ucontext.h>

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

// The application's action for any other signal it may handle: the kernel
// holds the runtime's wrapper, which runs the application's handler with the
// interrupted code's state kept (interrupted.h).
bool handler_runs_through_runtime(int sig);
int application_signal_action(int sig, const struct sigaction* act, struct sigaction* old);
// The signals whose default action ends the process, while the application
// leaves them at the default: the exit events run before the signal ends it.
void take_ending_signals();

// What the kernel would do with the signal under this action: run the
// handler (with the action's mask, but never blocking the runtime's own
// signals), ignore a sent signal, or end the process by it.
// app_tp: the program's thread pointer when it is not the runtime's (static
// programs), which the handler gets while it runs.
void run_handler(struct sigaction* action_in_force, int sig, siginfo_t* info, ucontext_t* uc,
                 uint64_t app_tp = 0);

// Ends the process by sig as the kernel would: the exit events first, then
// the default action; a sent signal (si_code <= 0) is sent again.
void die_by_signal(int sig, const siginfo_t* info);

// Masks never block the runtime's signals: a blocked SIGILL makes the next
// SVE word fatal, a blocked SIGSEGV the next probe of an unreadable page.
void remove_runtime_signals(sigset_t* set);
// After a mask change the application asked for (set as it was before the
// call, which may have overwritten it): keeps the thread's view of the
// runtime's signals and puts it into old.
void application_mask_changed(int how, const sigset_t* set_before_call, sigset_t* old);
// A word that is non-zero once any thread's view has held one of the
// runtime's signals (it stays so): until then each view is empty.
const uint32_t* runtime_signal_ever_in_a_view();

// SIGSEGV and SIGBUS. The client's handler takes a fault raised while the
// client runs (in an emulation call or in the client's own code), and any
// fault while the application has no handler of its own; the
// application's handler takes the rest, and every sent signal.
void take_fault_signals();
// A SIGILL at the trap to which a fault the client handed over to the
// application leads: runs the application's handler for it, with the context
// at the faulting instruction. False for any other SIGILL.
bool deliver_handed_over_fault(ucontext_t* uc, uint64_t app_tp);
// Whether sig is SIGSEGV or SIGBUS and the runtime has taken them.
bool fault_signal_taken(int sig);
// sigaction for SIGSEGV or SIGBUS, on the client's or the application's side.
void fault_signal_action(int sig, const struct sigaction* act, struct sigaction* old,
                         bool by_client);
// Whether code at pc belongs to the client: true for everything while the
// client is being loaded (its constructors and those of its libraries).
bool client_code(const void* pc);
void client_loading(bool loading);
// Records where the loaded client's code lies.
void note_client_code(void* client_handle);
