// The application's handlers for the signals the runtime does not own (all
// but SIGILL, SIGSEGV and SIGBUS) run through the runtime too: such a signal
// may come while the thread is inside a fragment or an emulation call, and
// the handler may run SVE code of its own. The kernel holds the runtime's
// wrapper with the application's flags and mask; the application's action
// is kept here and reported back as it was given. The signals whose default
// action ends the process come to the runtime while the application leaves
// them at the default too, so that the exit events run first and the trace
// keeps every record.
#include <atomic>
#include <cerrno>

#include "signals.h"
#include "thread.h"

namespace {

struct sigaction app_actions[NSIG];
std::atomic<bool> app_action_known[NSIG];

bool has_handler(const struct sigaction& a) {
  return a.sa_handler != SIG_DFL && a.sa_handler != SIG_IGN;
}

// Asynchronous signals whose default action ends the process (with a core
// dump or without). Those raised by an instruction (SIGTRAP, SIGFPE, SIGSYS)
// and the C library's own real-time signals are left to the kernel.
constexpr int kEndingByDefault[] = {SIGHUP,    SIGINT,  SIGQUIT, SIGABRT,   SIGUSR1, SIGUSR2,
                                    SIGPIPE,   SIGALRM, SIGTERM, SIGSTKFLT, SIGXCPU, SIGXFSZ,
                                    SIGVTALRM, SIGPROF, SIGPOLL, SIGPWR};

bool ends_process_by_default(int sig) {
  for (int s : kEndingByDefault)
    if (s == sig) return true;
  return false;
}

void on_application_signal(int sig, siginfo_t* info, void* context) {
  const uint64_t app_tp = enter_runtime_tls();
  const int saved_errno = errno;
  const struct sigaction& action = app_actions[sig];
  if (has_handler(action)) {
    run_handler(&app_actions[sig], sig, info, static_cast<ucontext_t*>(context),
                program_thread_pointer(app_tp));
  } else if (action.sa_handler == SIG_DFL && ends_process_by_default(sig)) {
    // The exit events, then the same signal again with the default action,
    // whoever sent it: it waits for this handler to return.
    siginfo_t sent = *info;
    sent.si_code = SI_USER;
    die_by_signal(sig, &sent);
  }
  // (An action changed meanwhile to ignore lets this one signal go.)
  errno = saved_errno;
  leave_runtime_tls(app_tp);
}

struct sigaction wrapper_action(const struct sigaction& base) {
  struct sigaction real = base;
  real.sa_sigaction = on_application_signal;
  real.sa_flags |= SA_SIGINFO;
  return real;
}

} // namespace

bool handler_runs_through_runtime(int sig) {
  return sig > 0 && sig < NSIG && sig != SIGILL && sig != SIGSEGV && sig != SIGBUS &&
         sig != SIGKILL && sig != SIGSTOP;
}

int application_signal_action(int sig, const struct sigaction* act, struct sigaction* old) {
  struct sigaction& mine = app_actions[sig];
  if (!app_action_known[sig]) {
    if (libc.sigaction(sig, nullptr, &mine) != 0) return -1;
    app_action_known[sig] = true;
  }
  const struct sigaction before = mine;
  if (act != nullptr) {
    struct sigaction real = *act;
    remove_runtime_signals(&real.sa_mask);
    if (has_handler(*act) || (act->sa_handler == SIG_DFL && ends_process_by_default(sig)))
      real = wrapper_action(real);
    // The wrapper resets the action it keeps; the kernel keeps the wrapper,
    // so that a signal that then ends the process runs the exit events.
    if (ends_process_by_default(sig)) real.sa_flags &= ~SA_RESETHAND;
    // The record first: a signal that comes in between finds the new
    // handler behind either action.
    mine = *act;
    if (libc.sigaction(sig, &real, nullptr) != 0) {
      const int error = errno;
      mine = before;
      errno = error;
      return -1;
    }
  }
  if (old != nullptr) *old = before;
  return 0;
}

void take_ending_signals() {
  for (int sig : kEndingByDefault) {
    struct sigaction& mine = app_actions[sig];
    // What the process inherited ignored, or handled by the C library,
    // stays as it is.
    if (libc.sigaction(sig, nullptr, &mine) != 0 || mine.sa_handler != SIG_DFL) continue;
    app_action_known[sig] = true;
    struct sigaction real = mine;
    sigemptyset(&real.sa_mask);
    real.sa_flags = 0;
    real = wrapper_action(real);
    libc.sigaction(sig, &real, nullptr);
  }
}
