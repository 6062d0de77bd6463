// The interposer: preloaded into the application's namespace, it stands in
// front of the C library functions whose effects the runtime must see or
// shape (signal dispositions and masks, thread start and end, fork, exit, the
// SVE vector length controls) and hands them to the runtime through the
// table the runtime wrote into zorvo_app_hooks. Exec is in exec.cpp.
#include <dlfcn.h>
#include <pthread.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>

#include "app_hooks.h"
#include "preload.h"
#include "signal_by_sigaction.h"
#include "vector_length_control.h"

extern "C" {
__attribute__((visibility("default"))) const app_hooks* zorvo_app_hooks = nullptr;
}

namespace {

template <typename F> F next_definition(const char* name) {
  return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

pthread_key_t exit_key;
pthread_once_t exit_key_once = PTHREAD_ONCE_INIT;

// The kernel's per-thread "inherit the vector length across exec" flag;
// a new thread starts with its creator's.
__thread bool vl_inherit;

struct thread_start {
  void* (*routine)(void*);
  void* arg;
  bool vl_inherit;
};

void on_thread_exit(void*) { zorvo_app_hooks->thread_exiting(); }

// Made on the first thread's creation, which a library constructor may ask
// for before this library's own constructor has run.
void make_exit_key() { pthread_key_create(&exit_key, on_thread_exit); }

void* start_attached(void* p) {
  const thread_start start = *static_cast<thread_start*>(p);
  std::free(p);
  vl_inherit = start.vl_inherit;
  zorvo_app_hooks->thread_started();
  // Any non-null value makes the C library call on_thread_exit at the end,
  // also after pthread_exit.
  pthread_setspecific(exit_key, &exit_key);
  return start.routine(start.arg);
}

void process_exiting() { zorvo_app_hooks->process_exiting(); }
void fork_prepare() { zorvo_app_hooks->fork_prepare(); }
void fork_parent() { zorvo_app_hooks->fork_parent(); }
void fork_child() { zorvo_app_hooks->fork_child(); }

__attribute__((constructor)) void interposer_start() {
  if (zorvo_app_hooks == nullptr) return;
  // The flag the program exec'd with, kept as a kernel keeps it.
  vl_inherit = zorvo_app_hooks->vector_length_inherited;
  pthread_atfork(fork_prepare, fork_parent, fork_child);
  // Registered before the program's main: runs after every atexit handler
  // the program registers from there on.
  std::atexit(process_exiting);
}

int sve_vector_length_control(int option, unsigned long arg) {
  const long result = vector_length_control::answer(
      option, arg, static_cast<unsigned long>(zorvo_app_hooks->vector_bytes), &vl_inherit);
  if (result >= 0) return static_cast<int>(result);
  errno = static_cast<int>(-result);
  return -1;
}

} // namespace

bool zorvo_preload::vector_length_inherited() { return vl_inherit; }

extern "C" {

int sigaction(int sig, const struct sigaction* act, struct sigaction* old) noexcept {
  if (zorvo_app_hooks) return zorvo_app_hooks->sigaction(sig, act, old);
  static const auto real = next_definition<decltype(&sigaction)>("sigaction");
  return real(sig, act, old);
}

sighandler_t signal(int sig, sighandler_t handler) noexcept {
  return signal_by_sigaction(sig, handler);
}

int sigprocmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  if (zorvo_app_hooks) return zorvo_app_hooks->sigprocmask(how, set, old);
  static const auto real = next_definition<decltype(&sigprocmask)>("sigprocmask");
  return real(how, set, old);
}

int pthread_sigmask(int how, const sigset_t* set, sigset_t* old) noexcept {
  if (zorvo_app_hooks) return zorvo_app_hooks->pthread_sigmask(how, set, old);
  static const auto real = next_definition<decltype(&pthread_sigmask)>("pthread_sigmask");
  return real(how, set, old);
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attr, void* (*routine)(void*),
                   void* arg) noexcept {
  static const auto real = next_definition<decltype(&pthread_create)>("pthread_create");
  if (zorvo_app_hooks == nullptr) return real(thread, attr, routine, arg);
  pthread_once(&exit_key_once, make_exit_key);
  auto* start = static_cast<thread_start*>(std::malloc(sizeof(thread_start)));
  if (start == nullptr) return EAGAIN;
  *start = {routine, arg, vl_inherit};
  const int rc = real(thread, attr, start_attached, start);
  if (rc != 0) std::free(start);
  return rc;
}

// The process ends without its atexit handlers; the client still finishes
// its trace. (The C library's own calls to _exit, after a failed exec in a
// child, do not come here.)
[[noreturn]] void _exit(int status) {
  if (zorvo_app_hooks) zorvo_app_hooks->ending_without_exit_handlers();
  static const auto real = next_definition<void (*)(int)>("_exit");
  real(status);
  __builtin_unreachable();
}

[[noreturn]] void _Exit(int status) noexcept { _exit(status); }

// Translations of code there must not outlive it. (The dynamic loader's own
// unmapping at dlclose does not come here; the runtime hears of it as an
// object closing.)
int munmap(void* start, size_t length) noexcept {
  static const auto real = next_definition<decltype(&munmap)>("munmap");
  const int rc = real(start, length);
  if (rc == 0 && zorvo_app_hooks) zorvo_app_hooks->code_unmapped(start, length);
  return rc;
}

// Code made writable, or no longer executable, may be rewritten before it
// runs again (a program that generates code flips its pages so). Its
// translations go first, while its pages are as they were.
int mprotect(void* start, size_t length, int protection) noexcept {
  static const auto real = next_definition<decltype(&mprotect)>("mprotect");
  if (zorvo_app_hooks && (protection & (PROT_WRITE | PROT_EXEC)) != PROT_EXEC)
    zorvo_app_hooks->code_protection_changing(start, length);
  const int rc = real(start, length, protection);
  if (zorvo_app_hooks) zorvo_app_hooks->mappings_changed();
  return rc;
}

// A fixed mapping may replace code the runtime has read the protection of.
void* mmap(void* start, size_t length, int protection, int flags, int fd, off_t offset) noexcept {
  static const auto real = next_definition<decltype(&mmap)>("mmap");
  void* const at = real(start, length, protection, flags, fd, offset);
  if (at != MAP_FAILED && (flags & MAP_FIXED) && zorvo_app_hooks)
    zorvo_app_hooks->mappings_changed();
  return at;
}

void* mmap64(void* start, size_t length, int protection, int flags, int fd, off_t offset) noexcept {
  return mmap(start, length, protection, flags, fd, offset);
}

int prctl(int option, ...) noexcept {
  va_list ap;
  va_start(ap, option);
  unsigned long args[4];
  for (unsigned long& a : args) a = va_arg(ap, unsigned long);
  va_end(ap);
  if (zorvo_app_hooks && vector_length_control::is_vl_option(option))
    return sve_vector_length_control(option, args[0]);
  static const auto real = next_definition<int (*)(int, ...)>("prctl");
  return real(option, args[0], args[1], args[2], args[3]);
}

// The system calls above made by number through syscall() reach the same
// ends as the functions. (A program's own svc instruction does not come
// here.)
long syscall(long number, ...) noexcept {
  va_list ap;
  va_start(ap, number);
  long a[6];
  for (long& arg : a) arg = va_arg(ap, long);
  va_end(ap);
  if (zorvo_app_hooks) {
    if (number == SYS_exit_group) zorvo_app_hooks->ending_without_exit_handlers();
    if (number == SYS_prctl && vector_length_control::is_vl_option(a[0]))
      return sve_vector_length_control(static_cast<int>(a[0]), static_cast<unsigned long>(a[1]));
    if (number == SYS_execve)
      return execve(reinterpret_cast<const char*>(a[0]), reinterpret_cast<char* const*>(a[1]),
                    reinterpret_cast<char* const*>(a[2]));
    if (number == SYS_munmap) return munmap(reinterpret_cast<void*>(a[0]), a[1]);
    if (number == SYS_mprotect)
      return mprotect(reinterpret_cast<void*>(a[0]), a[1], static_cast<int>(a[2]));
  }
  static const auto real = next_definition<long (*)(long, ...)>("syscall");
  return real(number, a[0], a[1], a[2], a[3], a[4], a[5]);
}

} // extern "C"
