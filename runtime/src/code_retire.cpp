#include "code_retire.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>

#include "code_patch.h"
#include "fragments.h"
#include "sites.h"

namespace {

std::atomic_flag lock = ATOMIC_FLAG_INIT;
rt_thread* threads;
uint64_t retirement_count;
std::atomic<uintptr_t> lowest_translated{UINTPTR_MAX};
std::atomic<uintptr_t> highest_translated{0};

} // namespace

// Signals stay blocked while the lock is held: the SIGILL handler of the
// same thread takes it too. (The kernel's own call: the runtime's mask calls
// never block SIGILL.)
code_lock::code_lock() {
  sigset_t all;
  sigfillset(&all);
  syscall(SYS_rt_sigprocmask, SIG_SETMASK, &all, &saved_, 8);
  while (lock.test_and_set(std::memory_order_acquire)) sched_yield();
}

code_lock::code_lock(signals_blocked_t) : restore_(false) {
  while (lock.test_and_set(std::memory_order_acquire)) sched_yield();
}

code_lock::~code_lock() {
  lock.clear(std::memory_order_release);
  if (restore_) syscall(SYS_rt_sigprocmask, SIG_SETMASK, &saved_, nullptr, 8);
}

void register_thread(rt_thread* t) {
  code_lock held;
  t->retirements_seen = retirement_count;
  t->next_thread = threads;
  threads = t;
}

void only_forking_thread_left() {
  sites_after_fork();
  lock.clear();
  threads = current_thread();
  if (threads != nullptr) {
    threads->next_thread = nullptr;
    threads->retirements_seen = retirement_count;
  }
}

void unregister_thread(rt_thread* t) {
  code_lock held;
  for (rt_thread** link = &threads; *link; link = &(*link)->next_thread)
    if (*link == t) {
      *link = t->next_thread;
      break;
    }
}

void note_translated(app_pc tag) {
  const auto a = reinterpret_cast<uintptr_t>(tag);
  uintptr_t low = lowest_translated.load(std::memory_order_relaxed);
  while (a < low && !lowest_translated.compare_exchange_weak(low, a)) {
  }
  uintptr_t high = highest_translated.load(std::memory_order_relaxed);
  while (a > high && !highest_translated.compare_exchange_weak(high, a)) {
  }
}

void seen_outside_fragments(rt_thread* t) {
  // A handler of the application's own may have interrupted a fragment.
  if (t->interrupted_depth == 0) t->retirements_seen = retirement_count;
}

uint64_t next_retirement() { return ++retirement_count; }

uint64_t retirements_every_thread_is_past() {
  uint64_t oldest = retirement_count;
  for (const rt_thread* t = threads; t; t = t->next_thread)
    if (t->retirements_seen < oldest) oldest = t->retirements_seen;
  return oldest;
}

void retire_code(app_pc start, app_pc end, bool still_mapped) {
  mappings_changed();
  const auto s = reinterpret_cast<uintptr_t>(start), e = reinterpret_cast<uintptr_t>(end);
  if (s > highest_translated.load() || e <= lowest_translated.load()) return;
  code_lock held;
  const uint64_t retirement = next_retirement();
  retire_sites_in(start, end, still_mapped, retirement);
  retire_fragments_in(start, end, retirement);
  // The caller is in the application's code (or the runtime's handler for
  // it), not in a fragment.
  if (rt_thread* t = current_thread()) seen_outside_fragments(t);
}
