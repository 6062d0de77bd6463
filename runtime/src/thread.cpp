#include "thread.h"

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "fragments.h"
#include "runtime.h"
#include "sites.h"

namespace {

// Emulation calls run here: a decoder, the generic tier's values on its
// stack, and a fault handler on top of them.
constexpr size_t kRuntimeStackSize = 512 * 1024;
constexpr size_t kGuardSize = 4096;

__thread rt_thread* current __attribute__((tls_model("initial-exec")));

size_t thread_record_size() { return (sizeof(rt_thread) + 4095) & ~size_t(4095); }

} // namespace

rt_thread* current_thread() { return current; }

ptrdiff_t current_thread_tls_offset() {
  return reinterpret_cast<char*>(&current) - static_cast<char*>(__builtin_thread_pointer());
}

rt_thread* attach_thread() {
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
  current = t;
  run_thread_init_events(t);
  return t;
}

void detach_thread(rt_thread* t) {
  run_thread_exit_events(t);
  if (current == t) current = nullptr;
  counters.fragment_entries += t->block.branch_entries;
  release_site_entries(t);
  release_fragments(t);
  release_code_cache(t);
  arena_release(&t->build_arena);
  unmap_pages(t->stack, t->stack_size);
  unmap_pages(t, thread_record_size());
}

namespace {

// Plain globals, read before the thread pointer is the runtime's.
uint64_t runtime_tp;
long runtime_tid;

uint64_t read_tp() {
  uint64_t tp;
  asm volatile("mrs %0, tpidr_el0" : "=r"(tp));
  return tp;
}

void write_tp(uint64_t tp) { asm volatile("msr tpidr_el0, %0" : : "r"(tp) : "memory"); }

long raw_syscall(long n, long a = 0, long b = 0, long c = 0) {
  register long x8 asm("x8") = n;
  register long x0 asm("x0") = a;
  register long x1 asm("x1") = b;
  register long x2 asm("x2") = c;
  asm volatile("svc #0" : "+r"(x0) : "r"(x8), "r"(x1), "r"(x2) : "memory");
  return x0;
}

[[noreturn]] void only_first_thread() {
  static const char message[] =
      "zorvo: only the first thread of a statically linked program can run SVE code\n";
  raw_syscall(SYS_write, 2, reinterpret_cast<long>(message), sizeof message - 1);
  raw_syscall(SYS_exit_group, 1);
  __builtin_unreachable();
}

} // namespace

void keep_runtime_thread_pointer() {
  runtime_tp = read_tp();
  runtime_tid = raw_syscall(SYS_gettid);
}

bool separate_thread_pointer() { return runtime_tp != 0; }

uint64_t enter_runtime_tls() {
  if (runtime_tp == 0) return 0;
  const uint64_t app_tp = read_tp();
  if (app_tp == runtime_tp) return 0;
  if (raw_syscall(SYS_gettid) != runtime_tid) only_first_thread();
  write_tp(runtime_tp);
  return app_tp;
}

void leave_runtime_tls(uint64_t app_tp) {
  if (app_tp != 0) write_tp(app_tp);
}
