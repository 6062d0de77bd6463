#include "signals.h"

#include <dlfcn.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>

#include "block.h"
#include "code_retire.h"
#include "emit.h"
#include "fragments.h"
#include "interrupted.h"
#include "runtime.h"
#include "sites.h"
#include "static_syscalls.h"
#include "thread.h"

libc_functions libc;

namespace {

// What the application asked for SIGILL: the default until it says more.
struct sigaction app_action;

// Sets pc and X28 so that returning from the handler runs the fragment.
void enter(rt_thread* t, ucontext_t* uc, byte* code) {
  t->block.app_x28 = uc->uc_mcontext.regs[28];
  uc->uc_mcontext.regs[28] = reinterpret_cast<uint64_t>(&t->block);
  uc->uc_mcontext.pc = reinterpret_cast<uint64_t>(code);
  ++counters.fragment_entries;
}

// Once the exit events have run no block can be built. A thread other than
// the exiting one that meets a new SVE word then waits for the end, which is
// near, rather than die of a SIGILL the program never had.
[[noreturn]] void wait_for_process_exit() {
  for (;;) pause();
}

// Whether the signal is one the runtime carries out itself: an SVE word that
// the client emulates, or the end of a fragment that could not branch home.
bool take_over(const siginfo_t* info, ucontext_t* uc) {
  // A signal sent by kill() or raise() belongs to the application.
  if (info->si_code <= 0) return false;
  auto* pc = reinterpret_cast<byte*>(uc->uc_mcontext.pc);
  rt_thread* t = current_thread();
  if (in_code_cache(pc)) {
    const app_pc target = exit_trap_target(pc);
    if (target == nullptr) return false;
    uc->uc_mcontext.pc = reinterpret_cast<uint64_t>(target);
    return true;
  }
  // A thread without a fragment for a patched site traps in the site's
  // stub, with every register as it was at the site.
  if (const app_pc site = site_of_stub(pc)) {
    pc = site;
    uc->uc_mcontext.pc = reinterpret_cast<uint64_t>(site);
  }
  if (!is_sve_word(application_word(pc))) return false;
  if (t == nullptr && !runtime_shut_down && (t = attach_thread()) == nullptr) {
    dr_fprintf(our_stderr, "zorvo: no memory for a new thread's runtime state\n");
    dr_abort();
  }
  // An application handler that left by siglongjmp is over.
  if (t != nullptr)
    drop_abandoned(t, uc->uc_mcontext.sp, reinterpret_cast<uintptr_t>(__builtin_frame_address(0)));
  bool none = t == nullptr;
  byte* const code =
      none ? nullptr : fragment_for(t, pc, !runtime_shut_down, !settings.entry_by_signal, &none);
  if (none) {
    if (syscall(SYS_gettid) != exiting_thread) wait_for_process_exit();
    return false;
  }
  if (code == nullptr) return false;
  enter(t, uc, code);
  return true;
}

} // namespace

void die_by_signal(int sig, const siginfo_t* info) {
  // The exit events still run, so that the trace keeps every record.
  process_dying_by_signal();
  struct sigaction dfl;
  std::memset(&dfl, 0, sizeof dfl);
  dfl.sa_handler = SIG_DFL;
  libc.sigaction(sig, &dfl, nullptr);
  // An instruction raises the signal again when the handler returns; a sent
  // signal is sent again, and waits until the handler's mask is gone.
  if (info->si_code <= 0) syscall(SYS_tgkill, getpid(), syscall(SYS_gettid), sig);
}

namespace {

// Which of the runtime's signals the thread's application code has blocked:
// the kernel never blocks them, but the program reads back what it set.
thread_local sigset_t app_blocked;
constexpr int kRuntimeSignals[] = {SIGILL, SIGSEGV, SIGBUS};
// Set for good once any thread's view holds one of them: a static program's
// mask calls then all come to the runtime.
std::atomic<uint32_t> runtime_signal_viewed;

void add_runtime_signals_of(const sigset_t& from, sigset_t* to) {
  for (int sig : kRuntimeSignals)
    if (sigismember(&from, sig) == 1) sigaddset(to, sig);
}

} // namespace

void application_mask_changed(int how, const sigset_t* set_before_call, sigset_t* old) {
  const sigset_t before = app_blocked;
  if (old) add_runtime_signals_of(before, old);
  if (set_before_call == nullptr) return;
  if (how == SIG_SETMASK) sigemptyset(&app_blocked);
  for (int sig : kRuntimeSignals) {
    if (sigismember(set_before_call, sig) != 1) continue;
    if (how == SIG_UNBLOCK) {
      sigdelset(&app_blocked, sig);
    } else {
      sigaddset(&app_blocked, sig);
      runtime_signal_viewed.store(1);
    }
  }
}

const uint32_t* runtime_signal_ever_in_a_view() {
  static_assert(sizeof runtime_signal_viewed == sizeof(uint32_t));
  return reinterpret_cast<const uint32_t*>(&runtime_signal_viewed);
}

void remove_runtime_signals(sigset_t* set) {
  sigdelset(set, SIGILL);
  sigdelset(set, SIGSEGV);
  sigdelset(set, SIGBUS);
}

void run_handler(struct sigaction* action_in_force, int sig, siginfo_t* info, ucontext_t* uc,
                 uint64_t app_tp) {
  const struct sigaction action = *action_in_force;
  if (action.sa_handler == SIG_IGN && info->si_code <= 0) return;
  if (action.sa_handler == SIG_DFL || action.sa_handler == SIG_IGN) {
    die_by_signal(sig, info);
    return;
  }
  if (action.sa_flags & SA_RESETHAND) action_in_force->sa_handler = SIG_DFL;
  sigset_t mask = uc->uc_sigmask, old;
  for (int s = 1; s < NSIG; ++s)
    if (sigismember(&action.sa_mask, s) == 1) sigaddset(&mask, s);
  if (!(action.sa_flags & SA_NODEFER)) sigaddset(&mask, sig);
  // The runtime's signals stay open: the handler may itself run SVE code.
  remove_runtime_signals(&mask);
  libc.pthread_sigmask(SIG_SETMASK, &mask, &old);
  // The handler runs with the program's thread pointer, the runtime's
  // again after it.
  const bool switch_tp =
      app_tp != 0 && app_tp != reinterpret_cast<uint64_t>(__builtin_thread_pointer());
  call_application_handler(action, sig, info, uc, switch_tp ? app_tp : 0);
  libc.pthread_sigmask(SIG_SETMASK, &old, nullptr);
}

namespace {

bool has_own_handler(const struct sigaction& a) {
  return a.sa_handler != SIG_DFL && a.sa_handler != SIG_IGN;
}

// An SVE word the runtime did not carry out is about to end the program: the
// user learns which word it was, since the death alone looks like a crash.
void report_word_not_emulated(const siginfo_t* info, const ucontext_t* uc) {
  if (info->si_code <= 0 || has_own_handler(app_action)) return;
  const auto pc = reinterpret_cast<app_pc>(uc->uc_mcontext.pc);
  const uint32_t word = application_word(pc);
  if (!is_sve_word(word)) return;
  dr_fprintf(our_stderr, "zorvo: SVE instruction 0x%08x at %p not emulated\n", word,
             static_cast<void*>(pc));
}

void on_sigill(int sig, siginfo_t* info, void* context) {
  auto* uc = static_cast<ucontext_t*>(context);
  switch (take_clone_return(uc)) {
  case clone_return::none:
    break;
  case clone_return::done:
    return;
  case clone_return::in_forked_child: {
    runtime_tls_after_fork();
    const uint64_t tp = enter_runtime_tls();
    process_forked();
    leave_runtime_tls(tp);
    return;
  }
  }
  const uint64_t app_tp = enter_runtime_tls();
  const int saved_errno = errno;
  if (take_static_system_call(uc, app_tp)) {
    ++counters.system_calls_trapped;
    errno = saved_errno;
    leave_runtime_tls(app_tp);
    return;
  }
  ++counters.signals;
  if (deliver_handed_over_fault(uc, app_tp)) {
    // done: the application's fault handler ran
  } else if (!take_over(info, uc)) {
    report_word_not_emulated(info, uc);
    run_handler(&app_action, sig, info, uc, program_thread_pointer(app_tp));
  }
  errno = saved_errno;
  leave_runtime_tls(app_tp);
}

template <typename F> F next_definition(const char* name) {
  return reinterpret_cast<F>(dlsym(RTLD_NEXT, name));
}

} // namespace

void resolve_libc_functions() {
  if (libc.sigaction != nullptr) return;
  libc.pthread_sigmask = next_definition<decltype(libc.pthread_sigmask)>("pthread_sigmask");
  libc.sigprocmask = next_definition<decltype(libc.sigprocmask)>("sigprocmask");
  libc.sigaction = next_definition<decltype(libc.sigaction)>("sigaction");
}

namespace {

// The runtime's handler runs where the application's would: on the
// alternate signal stack when the application's action asks for it.
void install_sigill_handler(bool on_alternate_stack) {
  struct sigaction action;
  std::memset(&action, 0, sizeof action);
  action.sa_sigaction = on_sigill;
  action.sa_flags = SA_SIGINFO | SA_RESTART | (on_alternate_stack ? SA_ONSTACK : 0);
  // Nothing asynchronous may run while a block is being built.
  sigfillset(&action.sa_mask);
  libc.sigaction(SIGILL, &action, nullptr);
}

} // namespace

void take_sigill() {
  app_action.sa_handler = SIG_DFL;
  install_sigill_handler(false);
}

void application_sigill_action(const struct sigaction* act, struct sigaction* old) {
  if (old) *old = app_action;
  if (act == nullptr) return;
  const bool was_on_stack = (app_action.sa_flags & SA_ONSTACK) != 0;
  app_action = *act;
  if (was_on_stack != ((act->sa_flags & SA_ONSTACK) != 0))
    install_sigill_handler((act->sa_flags & SA_ONSTACK) != 0);
}
