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
