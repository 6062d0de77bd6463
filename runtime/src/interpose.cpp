// The C library functions the runtime stands in front of, so that the
// application keeps its view of SIGILL, SIGSEGV and SIGBUS while the runtime
// owns them. The client's calls bind to these directly; the application's
// come through the interposer (preload/).
#include <signal.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

#include "runtime.h"
#include "signal_by_sigaction.h"
#include "signals.h"
#include "thread.h"

namespace {

// Fork handlers of the runtime's namespace (the client's, the trace
// sink's, the runtime's own). The application's C library runs its own
// handlers only, so the interposer passes its fork on to these.
struct fork_handler {
  void (*prepare)();
  void (*parent)();
  void (*child)();
};
constexpr int kMaxForkHandlers = 32;
fork_handler fork_handlers[kMaxForkHandlers];
std::atomic<int> fork_handler_count;

// A mask that blocks one of the runtime's signals would make the next SVE
// word, or the next probe of an unreadable page, fatal.
const sigset_t* without_runtime_signals(const sigset_t* set, sigset_t* copy) {
  if (set == nullptr) return set;
  *copy = *set;
  remove_runtime_signals(copy);
  return copy;
}

// The kernel gets the mask without the runtime's signals; the application
// keeps its own view of them.
int change_mask(int (*real)(int, const sigset_t*, sigset_t*), int how, const sigset_t* set,
                sigset_t* old) {
  sigset_t requested, copy;
  if (set) requested = *set;
  const int rc = real(how, how == SIG_UNBLOCK ? set : without_runtime_signals(set, &copy), old);
  if (rc == 0) application_mask_changed(how, set ? &requested : nullptr, old);
  return rc;
}

} // namespace

extern "C" {

int sigaction(int sig, const struct sigaction* act, struct sigaction* old) noexcept {
  resolve_libc_functions();
  if (sig == SIGILL && runtime_ready) {
    application_sigill_action(act, old);
    return 0;
  }
  const bool by_client = client_code(__builtin_return_address(0));
  if (fault_signal_taken(sig)) {
    fault_signal_action(sig, act, old, by_client);
    return 0;
  }
  if (runtime_ready && !by_client && handler_runs_through_runtime(sig))
    return application_signal_action(sig, act, old);
  if (act == nullptr) return libc.sigaction(sig, act, old);
  struct sigaction copy = *act;
  remove_runtime_signals(&copy.sa_mask);
  return libc.sigaction(sig, &copy, old);
}

sighandler_t signal(int sig, sighandler_t handler) noexcept {
  return signal_by_sigaction(sig, handler);
}

int pthread_sigmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  resolve_libc_functions();
  return change_mask(libc.pthread_sigmask, how, set, old);
}

int sigprocmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  resolve_libc_functions();
  return change_mask(libc.sigprocmask, how, set, old);
}

// pthread_atfork, in every object of the runtime's namespace, comes here.
int __register_atfork(void (*prepare)(), void (*parent)(), void (*child)(), void*) noexcept {
  const int n = fork_handler_count.fetch_add(1);
  if (n >= kMaxForkHandlers) return ENOMEM;
  fork_handlers[n] = {prepare, parent, child};
  return 0;
}

} // extern "C"

// In the order the C library runs them: prepare handlers last registered
// first, the others first registered first.
void run_fork_prepare() {
  for (int i = std::min(fork_handler_count.load(), kMaxForkHandlers) - 1; i >= 0; --i)
    if (fork_handlers[i].prepare) fork_handlers[i].prepare();
}

void run_fork_parent() {
  for (int i = 0; i < std::min(fork_handler_count.load(), kMaxForkHandlers); ++i)
    if (fork_handlers[i].parent) fork_handlers[i].parent();
}

void run_fork_child() {
  for (int i = 0; i < std::min(fork_handler_count.load(), kMaxForkHandlers); ++i)
    if (fork_handlers[i].child) fork_handlers[i].child();
}
