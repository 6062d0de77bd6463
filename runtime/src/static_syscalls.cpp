#include "static_syscalls.h"

#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <alloca.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "code_patch.h"
#include "code_retire.h"
#include "mask_call_stub.h"
#include "raw_mask_scope.h"
#include "relaunch_command.h"
#include "runtime.h"
#include "signals.h"
#include "thread.h"
#include "vector_length_control.h"

namespace {

constexpr uint32_t kSvc0 = mask_call_stub::word::kSvc0;
// The trap that stands in for a patched svc; a mask call's stub ends in it.
constexpr uint32_t kSystemCallTrap = mask_call_stub::kTrap;
// How far before the svc the number is looked for, within straight-line
// code.
constexpr int kNumberSearchWords = 16;

// clone: the C library's fork, whose child must find the runtime's locks
// free whatever the parent's other threads held.
constexpr long kTrappedCalls[] = {SYS_rt_sigaction, SYS_rt_sigprocmask, SYS_prctl,  SYS_exit_group,
                                  SYS_munmap,       SYS_mprotect,       SYS_execve, SYS_clone};

constexpr int kMaxSites = 1024;
uintptr_t sites[kMaxSites]; // sorted
int site_count;

// A clone cannot be made in the runtime's handler: the new thread would
// start there, on the stack its creator gave it, in the middle of the
// handler's frames (which a vfork child would overwrite under its parent).
// The program makes it itself, with its own registers and signal mask, from
// its site's trampoline, `svc #0` and a trap; at the trap, in the parent and
// in the child alike, the context goes back to the word after the site. A
// clone that makes a new process (no CLONE_VM) takes the site's second
// trampoline, whose trap tells the child apart.
constexpr uint32_t kCloneReturnTrap = 0x00005a44; // udf #0x5a44
constexpr uint32_t kForkReturnTrap = 0x00005a45;  // udf #0x5a45
constexpr int kTrampolineWords = 4;               // per site: two trampolines
uint32_t* clone_trampolines;

unsigned long vector_bytes;
bool initial_vl_inherit;
const char* relaunch = "";
thread_local bool vl_inherit_known, vl_inherit;

// What the words before an svc say of X8: a number, "any" (set from a
// register), or nothing found (-1).
constexpr long kFromRegister = -2;
long system_call_number(const uint32_t* svc, const uint32_t* segment_start) {
  for (int back = 1; back <= kNumberSearchWords && svc - back >= segment_start; ++back) {
    const uint32_t w = svc[-back];
    const bool branch_away = (w & 0xfc000000) == 0x14000000 || (w & 0xfffffc1f) == 0xd61f0000 ||
                             (w & 0xfffffc1f) == 0xd65f0000;
    if (branch_away) return -1;
    if ((w & 0x1f) != 8) continue;
    // movz w8/x8, #imm16 (no shift)
    if ((w & 0x7fe00000) == 0x52800000) return (w >> 5) & 0xffff;
    // orr x8/w8, xzr, Xm (mov x8, xm)
    if ((w & 0x7fe0ffe0) == 0x2a0003e0) return kFromRegister;
    // Anything else that writes X8 (ldr, add, ...) is taken as a register.
    if ((w & 0x1f) == 8) return kFromRegister;
  }
  return -1;
}

bool trapped(long number) {
  if (number == kFromRegister) return true;
  return std::find(std::begin(kTrappedCalls), std::end(kTrappedCalls), number) !=
         std::end(kTrappedCalls);
}

void patch(uint32_t* svc, long number) {
  if (site_count == kMaxSites || !replace_code_word(reinterpret_cast<app_pc>(svc), kSystemCallTrap))
    return;
  sites[site_count++] = reinterpret_cast<uintptr_t>(svc);
  if (number == SYS_rt_sigprocmask) mask_call_stub::note_site(sites[site_count - 1]);
}

long raw_system_call(long number, const uint64_t* a) {
  register long x8 asm("x8") = number;
  register long x0 asm("x0") = static_cast<long>(a[0]);
  register long x1 asm("x1") = static_cast<long>(a[1]);
  register long x2 asm("x2") = static_cast<long>(a[2]);
  register long x3 asm("x3") = static_cast<long>(a[3]);
  register long x4 asm("x4") = static_cast<long>(a[4]);
  register long x5 asm("x5") = static_cast<long>(a[5]);
  asm volatile("svc #0"
               : "+r"(x0)
               : "r"(x8), "r"(x1), "r"(x2), "r"(x3), "r"(x4), "r"(x5)
               : "memory");
  return x0;
}

// The kernel's struct sigaction on AArch64.
struct kernel_sigaction {
  void* handler;
  unsigned long flags;
  void* restorer;
  uint64_t mask;
};

void to_libc(const kernel_sigaction& k, struct sigaction* a) {
  std::memset(a, 0, sizeof *a);
  a->sa_handler = reinterpret_cast<sighandler_t>(k.handler);
  a->sa_flags = static_cast<int>(k.flags);
  a->sa_restorer = reinterpret_cast<void (*)()>(k.restorer);
  for (int s = 1; s <= 64; ++s)
    if (k.mask & (uint64_t(1) << (s - 1))) sigaddset(&a->sa_mask, s);
}

uint64_t kernel_mask(const sigset_t& set) {
  uint64_t mask = 0;
  for (int s = 1; s <= 64; ++s)
    if (sigismember(&set, s) == 1) mask |= uint64_t(1) << (s - 1);
  return mask;
}

void to_kernel(const struct sigaction& a, kernel_sigaction* k) {
  k->handler = reinterpret_cast<void*>(a.sa_handler);
  k->flags = static_cast<unsigned long>(a.sa_flags);
  k->restorer = reinterpret_cast<void*>(a.sa_restorer);
  k->mask = kernel_mask(a.sa_mask);
}

long signal_action(int sig, const kernel_sigaction* act, kernel_sigaction* old) {
  struct sigaction a, o;
  if (act) to_libc(*act, &a);
  int rc = 0;
  if (sig == SIGILL)
    application_sigill_action(act ? &a : nullptr, &o);
  else if (fault_signal_taken(sig))
    fault_signal_action(sig, act ? &a : nullptr, &o, false);
  else if (handler_runs_through_runtime(sig))
    rc = application_signal_action(sig, act ? &a : nullptr, &o);
  else
    return -ENOSYS; // the kernel's own answer
  if (rc != 0) return -errno;
  if (old) to_kernel(o, old);
  return 0;
}

// The thread's mask is the one the signal frame holds: the handler's own
// mask blocks everything while it runs.
long signal_mask(ucontext_t* uc, int how, const uint64_t* set, uint64_t* old) {
  sigset_t requested, before = uc->uc_sigmask;
  sigemptyset(&requested);
  if (set)
    for (int s = 1; s <= 64; ++s)
      if (*set & (uint64_t(1) << (s - 1))) sigaddset(&requested, s);
  sigset_t after = before;
  if (set) {
    if (how == SIG_SETMASK) sigemptyset(&after);
    if (how != SIG_BLOCK && how != SIG_UNBLOCK && how != SIG_SETMASK) return -EINVAL;
    for (int s = 1; s < NSIG; ++s) {
      if (sigismember(&requested, s) != 1) continue;
      if (how == SIG_UNBLOCK)
        sigdelset(&after, s);
      else
        sigaddset(&after, s);
    }
  }
  sigset_t reported = before;
  application_mask_changed(how, set ? &requested : nullptr, &reported);
  if (old) *old = kernel_mask(reported);
  remove_runtime_signals(&after);
  sigdelset(&after, SIGKILL);
  sigdelset(&after, SIGSTOP);
  uc->uc_sigmask = after;
  return 0;
}

long vector_length(long option, unsigned long arg) {
  if (!vl_inherit_known) {
    vl_inherit = initial_vl_inherit;
    vl_inherit_known = true;
  }
  return vector_length_control::answer(option, arg, vector_bytes, &vl_inherit);
}

// The program's own mask, for the length of a call: an exec keeps the mask,
// and this handler's blocks everything.
raw_mask_scope program_mask(const ucontext_t* uc) {
  sigset_t mask = uc->uc_sigmask;
  remove_runtime_signals(&mask);
  return raw_mask_scope(SIG_SETMASK, mask);
}

// An AArch64 program starts under zorvo again, anything else as it is; the
// exit events run first (not in a vfork child, which shares this memory).
long exec(const ucontext_t* uc, const uint64_t* a) {
  const auto* path = reinterpret_cast<const char*>(a[0]);
  auto* const* argv = reinterpret_cast<char* const*>(a[1]);
  process_dying_by_signal();
  const raw_mask_scope open = program_mask(uc);
  if (*relaunch == 0 || !relaunch_command::is_aarch64_program(path))
    return raw_system_call(SYS_execve, a);
  char* text = static_cast<char*>(alloca(std::strlen(relaunch) + 1));
  std::strcpy(text, relaunch);
  auto** args =
      static_cast<char**>(alloca(relaunch_command::argv_room(relaunch, argv) * sizeof(char*)));
  relaunch_command::make_argv(text, vector_length(PR_SVE_GET_VL, 0) & PR_SVE_VL_INHERIT, path, argv,
                              args);
  const uint64_t call[6] = {
      reinterpret_cast<uint64_t>(args[0]), reinterpret_cast<uint64_t>(args), a[2], 0, 0, 0};
  return raw_system_call(SYS_execve, call);
}

void make_clone_trampolines() {
  const size_t used = size_t(site_count) * kTrampolineWords * 4;
  const size_t bytes = (used + 4095) & ~size_t(4095);
  auto* words = static_cast<uint32_t*>(map_pages(bytes));
  if (words == nullptr) return;
  for (int i = 0; i < site_count; ++i) {
    uint32_t* w = words + kTrampolineWords * i;
    w[0] = kSvc0;
    w[1] = kCloneReturnTrap;
    w[2] = kSvc0;
    w[3] = kForkReturnTrap;
  }
  if (mprotect(words, bytes, PROT_READ | PROT_EXEC) != 0) {
    unmap_pages(words, bytes);
    return;
  }
  __builtin___clear_cache(reinterpret_cast<char*>(words), reinterpret_cast<char*>(words) + used);
  clone_trampolines = words;
}

bool is_clone(long number) { return number == SYS_clone || number == SYS_clone3; }

// A thread that shares its creator's memory but not a thread block of its
// own runs with its creator's thread pointer; a vfork child does too, but
// its parent waits meanwhile.
// clone3's arguments: the kernel refuses a null or short structure (the call
// makes nothing then, and 0 does here).
uint64_t clone_flags(long number, const uint64_t* x) {
  if (number == SYS_clone) return x[0];
  if (x[0] == 0 || x[1] < sizeof(uint64_t)) return 0;
  return *reinterpret_cast<const uint64_t*>(x[0]);
}

bool shares_thread_pointer(uint64_t flags) {
  return (flags & CLONE_VM) && !(flags & (CLONE_SETTLS | CLONE_VFORK));
}

// The clone at site `site` is made from its trampoline; false when there are
// none (no memory was left for them at the start).
bool make_clone_at_trampoline(ucontext_t* uc, int site, long number, uint64_t app_tp) {
  if (clone_trampolines == nullptr) return false;
  const auto* x = reinterpret_cast<const uint64_t*>(uc->uc_mcontext.regs);
  const uint64_t flags = clone_flags(number, x);
  if (shares_thread_pointer(flags)) thread_pointer_shared(app_tp);
  const bool new_process = !(flags & CLONE_VM);
  uc->uc_mcontext.pc = reinterpret_cast<uint64_t>(clone_trampolines + kTrampolineWords * site +
                                                  (new_process ? 2 : 0));
  return true;
}

// -ENOSYS: the call goes to the kernel as it is.
long carry_out(ucontext_t* uc, long number, const uint64_t* a) {
  switch (number) {
  case SYS_rt_sigaction:
    if (a[3] != 8) return -EINVAL;
    return signal_action(static_cast<int>(a[0]), reinterpret_cast<const kernel_sigaction*>(a[1]),
                         reinterpret_cast<kernel_sigaction*>(a[2]));
  case SYS_rt_sigprocmask:
    if (a[3] != 8) return -EINVAL;
    return signal_mask(uc, static_cast<int>(a[0]), reinterpret_cast<const uint64_t*>(a[1]),
                       reinterpret_cast<uint64_t*>(a[2]));
  case SYS_prctl:
    if (vector_length_control::is_vl_option(static_cast<long>(a[0])))
      return vector_length(static_cast<long>(a[0]), a[1]);
    return -ENOSYS;
  case SYS_exit_group:
    // The exit events, in this handler (the thread's runtime memory stays).
    process_dying_by_signal();
    return -ENOSYS;
  case SYS_mprotect: {
    if ((a[2] & (PROT_WRITE | PROT_EXEC)) != PROT_EXEC)
      retire_code(reinterpret_cast<app_pc>(a[0]), reinterpret_cast<app_pc>(a[0] + a[1]), true);
    const long rc = raw_system_call(number, a);
    // Another thread may have read the mappings since the retirement.
    mappings_changed();
    return rc;
  }
  case SYS_execve:
    return exec(uc, a);
  case SYS_munmap: {
    const long rc = raw_system_call(number, a);
    if (rc == 0) retire_code(reinterpret_cast<app_pc>(a[0]), reinterpret_cast<app_pc>(a[0] + a[1]));
    return rc;
  }
  default:
    return -ENOSYS;
  }
}

} // namespace

void trap_static_system_calls(const ElfW(Phdr) * phdr, int phnum, int vector_length_bytes,
                              bool vector_length_inherited, const char* relaunch_command) {
  vector_bytes = static_cast<unsigned long>(vector_length_bytes);
  initial_vl_inherit = vector_length_inherited;
  relaunch = relaunch_command ? relaunch_command : "";
  // The load bias: from PT_PHDR, or else from the ELF header at the start of
  // the first segment, which the program headers follow.
  uintptr_t bias = 0;
  bool found = false;
  for (int i = 0; i < phnum && !found; ++i)
    if (phdr[i].p_type == PT_PHDR) {
      bias = reinterpret_cast<uintptr_t>(phdr) - phdr[i].p_vaddr;
      found = true;
    }
  for (int i = 0; i < phnum && !found; ++i)
    if (phdr[i].p_type == PT_LOAD && phdr[i].p_offset == 0) {
      const uintptr_t guess =
          reinterpret_cast<uintptr_t>(phdr) - sizeof(ElfW(Ehdr)) - phdr[i].p_vaddr;
      const auto* header = reinterpret_cast<const ElfW(Ehdr)*>(phdr[i].p_vaddr + guess);
      if (std::memcmp(header->e_ident, ELFMAG, SELFMAG) == 0 &&
          header->e_phoff == sizeof(ElfW(Ehdr))) {
        bias = guess;
        found = true;
      }
    }
  if (!found) return;
  for (int i = 0; i < phnum; ++i) {
    if (phdr[i].p_type != PT_LOAD || !(phdr[i].p_flags & PF_X)) continue;
    auto* start = reinterpret_cast<uint32_t*>(bias + phdr[i].p_vaddr);
    const size_t words = phdr[i].p_filesz / 4;
    for (size_t w = 0; w < words; ++w) {
      if (start[w] != kSvc0) continue;
      const long number = system_call_number(start + w, start);
      if (trapped(number)) patch(start + w, number);
    }
  }
  std::sort(sites, sites + site_count);
  if (site_count > 0) make_clone_trampolines();
  mask_call_stub::make_stubs(runtime_signal_ever_in_a_view());
  dr_log(nullptr, DR_LOG_ALL, 1, "zorvo: %d system call sites of the program trapped\n",
         site_count);
}

clone_return take_clone_return(ucontext_t* uc) {
  if (clone_trampolines == nullptr) return clone_return::none;
  constexpr uintptr_t kSiteBytes = kTrampolineWords * 4;
  const uintptr_t offset = uc->uc_mcontext.pc - reinterpret_cast<uintptr_t>(clone_trampolines);
  if (offset >= static_cast<uintptr_t>(site_count) * kSiteBytes || offset % 8 != 4)
    return clone_return::none;
  uc->uc_mcontext.pc = sites[offset / kSiteBytes] + 4;
  const bool second = offset % kSiteBytes == 12;
  return second && uc->uc_mcontext.regs[0] == 0 ? clone_return::in_forked_child
                                                : clone_return::done;
}

bool take_static_system_call(ucontext_t* uc, uint64_t app_tp) {
  uintptr_t pc = uc->uc_mcontext.pc;
  if (site_count == 0) return false;
  if (const uintptr_t site = mask_call_stub::site_of_trap(pc)) pc = site;
  const uintptr_t* site = std::lower_bound(sites, sites + site_count, pc);
  if (site == sites + site_count || *site != pc) return false;
  auto* x = reinterpret_cast<uint64_t*>(uc->uc_mcontext.regs);
  const long number = static_cast<long>(x[8]);
  dr_log(nullptr, DR_LOG_ALL, 3, "zorvo: system call %ld at %p\n", number,
         reinterpret_cast<void*>(pc));
  if (is_clone(number) &&
      make_clone_at_trampoline(uc, static_cast<int>(site - sites), number, app_tp))
    return true;
  long rc = carry_out(uc, number, x);
  if (rc == -ENOSYS) {
    // A call that may block (one made through syscall()) waits with the
    // program's mask, not this handler's, which blocks everything.
    const raw_mask_scope open = program_mask(uc);
    rc = raw_system_call(number, x);
  }
  x[0] = static_cast<uint64_t>(rc);
  uc->uc_mcontext.pc = pc + 4;
  return true;
}
