#include "thread.h"

#include <dlfcn.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>

#include "code_retire.h"
#include "fragments.h"
#include "interrupted.h"
#include "raw_mask_scope.h"
#include "runtime.h"
#include "sites.h"

namespace {

// The AArch64 TCB is {dtv, a word the C library does not use}.
constexpr ptrdiff_t kTcbUnusedWordOffset = 8;

// Emulation calls run here: a decoder, the generic tier's values on its
// stack, and a fault handler on top of them.
constexpr size_t kRuntimeStackSize = 512 * 1024;
constexpr size_t kGuardSize = 4096;
// A handler's emulation calls need less: it runs in the handler's context.
constexpr size_t kNestedStackSize = 256 * 1024;

__thread rt_thread* current __attribute__((tls_model("initial-exec")));

size_t thread_record_size() { return (sizeof(rt_thread) + 4095) & ~size_t(4095); }

// Signals wait while a thread's runtime state is made or taken apart: a
// handler that ran SVE code meanwhile would find half of it.
raw_mask_scope signals_held() { return raw_mask_scope(SIG_BLOCK, raw_mask_scope::all_signals()); }

} // namespace

rt_thread* current_thread() { return current; }

ptrdiff_t current_thread_tls_offset() {
  // A static program's thread pointer is its own: its TCB's second word,
  // which the C library leaves unused, holds the runtime's thread.
  if (separate_thread_pointer()) return kTcbUnusedWordOffset;
  return reinterpret_cast<char*>(&current) - static_cast<char*>(__builtin_thread_pointer());
}

rt_thread* attach_thread() {
  const raw_mask_scope held = signals_held();
  auto* t = static_cast<rt_thread*>(map_pages(thread_record_size()));
  if (t == nullptr) return nullptr;
  t->stack_size = kRuntimeStackSize + kGuardSize;
  t->stack = static_cast<byte*>(map_pages(t->stack_size));
  if (t->stack == nullptr) {
    unmap_pages(t, thread_record_size());
    return nullptr;
  }
  // The lowest page stays as a guard: running off the stack faults at once.
  mprotect(t->stack, kGuardSize, PROT_NONE);
  t->block.stack_top = reinterpret_cast<reg_t>(t->stack + t->stack_size);
  t->tid = static_cast<pid_t>(syscall(SYS_gettid));
  t->block.runtime_tp = reinterpret_cast<reg_t>(__builtin_thread_pointer());
  t->block.site_entries = site_entry_table();
  current = t;
  register_thread(t);
  run_thread_init_events(t);
  return t;
}

void detach_thread(rt_thread* t) {
  const raw_mask_scope held = signals_held();
  run_thread_exit_events(t);
  if (current == t) current = nullptr;
  counters.fragment_entries += t->block.branch_entries;
  unregister_thread(t);
  arena_release(&t->build_arena);
  release_interrupted_states(t);
  for (byte* stack : t->nested_stacks)
    if (stack != nullptr) unmap_pages(stack, kNestedStackSize + kGuardSize);
  unmap_pages(t->stack, t->stack_size);
  unmap_pages(t, thread_record_size());
}

int runtime_stack_of(const rt_thread* t, uintptr_t sp) {
  const auto within = [sp](const byte* base, size_t size) {
    return sp > reinterpret_cast<uintptr_t>(base) && sp <= reinterpret_cast<uintptr_t>(base + size);
  };
  if (within(t->stack, t->stack_size)) return 0;
  for (int k = 0; k < kRuntimeStacks - 1; ++k)
    if (t->nested_stacks[k] != nullptr &&
        within(t->nested_stacks[k], kNestedStackSize + kGuardSize))
      return k + 1;
  return -1;
}

uintptr_t runtime_stack_top(rt_thread* t, int n) {
  if (n == 0) return reinterpret_cast<uintptr_t>(t->stack + t->stack_size);
  byte*& stack = t->nested_stacks[n - 1];
  if (stack == nullptr) {
    stack = static_cast<byte*>(map_pages(kNestedStackSize + kGuardSize));
    if (stack == nullptr) return 0;
    mprotect(stack, kGuardSize, PROT_NONE);
  }
  return reinterpret_cast<uintptr_t>(stack + kNestedStackSize + kGuardSize);
}

namespace {

// Plain globals, read before the thread pointer is the runtime's: each
// thread's runtime thread pointer, by thread id. Entries are never removed;
// a new thread with an old one's id takes over its block.
struct runtime_tls_of_thread {
  std::atomic<long> tid;
  uint64_t tp;
};
constexpr int kMaxStaticThreads = 4096;
runtime_tls_of_thread runtime_tls[kMaxStaticThreads];
std::atomic<int> runtime_tls_count;
bool static_program;
// The dynamic loader's allocation of a thread's static TLS and thread block.
using allocate_tls_fn = void* (*)(void*);
allocate_tls_fn allocate_tls;

uint64_t read_tp() {
  uint64_t tp;
  asm volatile("mrs %0, tpidr_el0" : "=r"(tp));
  return tp;
}

void write_tp(uint64_t tp) { asm volatile("msr tpidr_el0, %0" : : "r"(tp) : "memory"); }

long raw_syscall(long n, long a = 0, long b = 0, long c = 0, long d = 0) {
  register long x8 asm("x8") = n;
  register long x0 asm("x0") = a;
  register long x1 asm("x1") = b;
  register long x2 asm("x2") = c;
  register long x3 asm("x3") = d;
  asm volatile("svc #0" : "+r"(x0) : "r"(x8), "r"(x1), "r"(x2), "r"(x3) : "memory");
  return x0;
}

[[noreturn]] void no_runtime_tls() {
  static const char message[] = "zorvo: no room for a new thread's runtime state\n";
  raw_syscall(SYS_write, 2, reinterpret_cast<long>(message), sizeof message - 1);
  raw_syscall(SYS_exit_group, 1);
  __builtin_unreachable();
}

void add_runtime_tls(long tid, uint64_t tp) {
  const int n = runtime_tls_count.load();
  runtime_tls[n].tp = tp;
  runtime_tls[n].tid.store(tid);
  runtime_tls_count.store(n + 1);
}

// A thread the program's own C library made meets the runtime for the
// first time: it gets a thread block and TLS of the dynamic loader's making,
// initialised as for any new thread.
// The dynamic loader's allocator, at this point of the process, is not made
// for threads.
std::atomic_flag allocating = ATOMIC_FLAG_INIT;

uint64_t new_runtime_tls(long tid) {
  // A handler of another signal (the program's, through the wrapper) that
  // came meanwhile would wait here for ever.
  const uint64_t all = ~uint64_t(0);
  uint64_t before = 0;
  raw_syscall(SYS_rt_sigprocmask, SIG_BLOCK, reinterpret_cast<long>(&all),
              reinterpret_cast<long>(&before), sizeof all);
  while (allocating.test_and_set(std::memory_order_acquire)) {
  }
  void* tcb = allocate_tls && runtime_tls_count.load() < kMaxStaticThreads ? allocate_tls(nullptr)
                                                                           : nullptr;
  if (tcb != nullptr) add_runtime_tls(tid, reinterpret_cast<uint64_t>(tcb));
  allocating.clear(std::memory_order_release);
  raw_syscall(SYS_rt_sigprocmask, SIG_SETMASK, reinterpret_cast<long>(&before), 0, sizeof before);
  if (tcb == nullptr) no_runtime_tls();
  return reinterpret_cast<uint64_t>(tcb);
}

} // namespace

void keep_runtime_thread_pointer() {
  static_program = true;
  allocate_tls = reinterpret_cast<allocate_tls_fn>(dlsym(RTLD_DEFAULT, "_dl_allocate_tls"));
  add_runtime_tls(raw_syscall(SYS_gettid), read_tp());
}

bool separate_thread_pointer() { return static_program; }

void runtime_tls_after_fork() {
  allocating.clear();
  if (!static_program) return;
  // Where leaving the runtime in the parent left it.
  auto* t = reinterpret_cast<rt_thread**>(read_tp() + kTcbUnusedWordOffset)[0];
  if (t == nullptr) return;
  const long tid = raw_syscall(SYS_gettid);
  const int n = runtime_tls_count.load();
  for (int i = 0; i < n; ++i)
    if (runtime_tls[i].tid.load() == t->tid && runtime_tls[i].tp == t->block.runtime_tp)
      runtime_tls[i].tid.store(tid);
  t->tid = static_cast<pid_t>(tid);
}

uint64_t enter_runtime_tls() {
  if (!static_program) return 0;
  const long tid = raw_syscall(SYS_gettid);
  uint64_t tp = 0;
  const int n = runtime_tls_count.load();
  for (int i = 0; i < n && tp == 0; ++i)
    if (runtime_tls[i].tid.load() == tid) tp = runtime_tls[i].tp;
  if (tp == 0) tp = new_runtime_tls(tid);
  const uint64_t app_tp = read_tp();
  if (app_tp == tp) return 0;
  write_tp(tp);
  // A handler that interrupts the runtime from here on gives the program's
  // code this one.
  if (current != nullptr) current->block.app_tp = app_tp;
  return app_tp;
}

namespace {

constexpr int kMaxSharedThreadPointers = 64;
std::atomic<uint64_t> shared_thread_pointers[kMaxSharedThreadPointers];
std::atomic<int> shared_thread_pointer_count;

bool shared(uint64_t app_tp) {
  const int n = std::min(shared_thread_pointer_count.load(), kMaxSharedThreadPointers);
  for (int i = 0; i < n; ++i)
    if (shared_thread_pointers[i].load() == app_tp) return true;
  return false;
}

} // namespace

void thread_pointer_shared(uint64_t app_tp) {
  if (app_tp == 0 || shared(app_tp)) return;
  const int n = shared_thread_pointer_count.fetch_add(1);
  if (n < kMaxSharedThreadPointers) {
    shared_thread_pointers[n].store(app_tp);
  } else {
    static const char message[] =
        "zorvo: too many threads made by a raw clone share their creator's thread pointer\n";
    raw_syscall(SYS_write, 2, reinterpret_cast<long>(message), sizeof message - 1);
    raw_syscall(SYS_exit_group, 1);
  }
}

void leave_runtime_tls(uint64_t app_tp) {
  if (app_tp == 0) return;
  // Where the site stubs look for the thread.
  reinterpret_cast<rt_thread**>(app_tp + kTcbUnusedWordOffset)[0] =
      shared(app_tp) ? nullptr : current;
  write_tp(app_tp);
}

uint64_t program_thread_pointer(uint64_t app_tp) {
  if (app_tp != 0 || !static_program || current == nullptr) return app_tp;
  return current->block.app_tp;
}
