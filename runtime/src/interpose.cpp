// The C library functions the runtime stands in front of, so that the
// application keeps its view of SIGILL, SIGSEGV and SIGBUS while the runtime
// owns them, and so that every thread is known to the runtime before it runs.
#include <dlfcn.h>
#include <pthread.h>
#include <signal.h>

#include <cerrno>
#include <cstdlib>

#include "runtime.h"
#include "signals.h"
#include "thread.h"

namespace {

struct thread_start {
  void* (*routine)(void*);
  void* arg;
};

void* start_attached(void* p) {
  const thread_start start = *static_cast<thread_start*>(p);
  std::free(p);
  attach_thread();
  return start.routine(start.arg);
}

// A mask that blocks one of the runtime's signals would make the next SVE
// word, or the next probe of an unreadable page, fatal.
const sigset_t* without_runtime_signals(const sigset_t* set, sigset_t* copy) {
  if (set == nullptr) return set;
  *copy = *set;
  remove_runtime_signals(copy);
  return copy;
}

} // namespace

extern "C" {

int sigaction(int sig, const struct sigaction* act, struct sigaction* old) noexcept {
  resolve_libc_functions();
  if (sig == SIGILL && runtime_ready) {
    application_sigill_action(act, old);
    return 0;
  }
  if (fault_signal_taken(sig)) {
    fault_signal_action(sig, act, old, client_code(__builtin_return_address(0)));
    return 0;
  }
  if (act == nullptr) return libc.sigaction(sig, act, old);
  struct sigaction copy = *act;
  remove_runtime_signals(&copy.sa_mask);
  return libc.sigaction(sig, &copy, old);
}

// The C library's signal() does not go through sigaction's symbol.
sighandler_t signal(int sig, sighandler_t handler) noexcept {
  struct sigaction act, old;
  act.sa_handler = handler;
  act.sa_flags = SA_RESTART;
  sigemptyset(&act.sa_mask);
  sigaddset(&act.sa_mask, sig);
  if (sigaction(sig, &act, &old) != 0) return SIG_ERR;
  return old.sa_handler;
}

int pthread_sigmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  resolve_libc_functions();
  sigset_t copy;
  return libc.pthread_sigmask(how, how == SIG_UNBLOCK ? set : without_runtime_signals(set, &copy),
                              old);
}

int sigprocmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  resolve_libc_functions();
  sigset_t copy;
  return libc.sigprocmask(how, how == SIG_UNBLOCK ? set : without_runtime_signals(set, &copy), old);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attr, void* (*routine)(void*),
                   void* arg) noexcept {
  using create_fn = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  static const auto real_create = reinterpret_cast<create_fn>(dlsym(RTLD_NEXT, "pthread_create"));
  if (!runtime_ready) return real_create(thread, attr, routine, arg);
  auto* start = static_cast<thread_start*>(std::malloc(sizeof(thread_start)));
  if (start == nullptr) return EAGAIN;
  *start = {routine, arg};
  const int rc = real_create(thread, attr, start_attached, start);
  if (rc != 0) std::free(start);
  return rc;
}

} // extern "C"
