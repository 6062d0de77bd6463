// The application's handlers for the signals the runtime does not own (all
// but SIGILL, SIGSEGV and SIGBUS) run through the runtime too: such a signal
// may come while the thread is inside a fragment or an emulation call, and
// the handler may run SVE code of its own. The kernel holds the runtime's
// wrapper with the application's flags and mask; the application's action
// is kept here and reported back as it was given.
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

void on_application_signal(int sig, siginfo_t* info, void* context) {
  const uint64_t app_tp = enter_runtime_tls();
  const int saved_errno = errno;
  // Only a handler brings the kernel here; an action changed meanwhile to
  // the default or to ignore lets this one signal go.
  if (has_handler(app_actions[sig]))
    run_handler(&app_actions[sig], sig, info, static_cast<ucontext_t*>(context), app_tp);
  errno = saved_errno;
  leave_runtime_tls(app_tp);
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
    if (has_handler(*act)) {
      real.sa_sigaction = on_application_signal;
      real.sa_flags |= SA_SIGINFO;
    }
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
