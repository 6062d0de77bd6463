#include "code_retire.h"

#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>

#include "code_patch.h"
#include "fragments.h"
#include "sites.h"

namespace {

// The latest retirements; a thread that falls further behind retires all
// its fragments and builds anew what it meets again.
constexpr uint64_t kKeptRetirements = 64;

struct code_range {
  app_pc start, end;
};

std::atomic_flag lock = ATOMIC_FLAG_INIT;
rt_thread* threads;
code_range retired[kKeptRetirements];
std::atomic<uint64_t> retirement_count;
std::atomic<uintptr_t> lowest_translated{UINTPTR_MAX};
std::atomic<uintptr_t> highest_translated{0};

// Signals stay blocked while the lock is held: the SIGILL handler of the
// same thread takes it too. (The kernel's own call: the runtime's mask calls
// never block SIGILL.)
constexpr long kSigsetBytes = 8;

struct locked {
  sigset_t saved;
  locked() {
    sigset_t all;
    sigfillset(&all);
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, &all, &saved, kSigsetBytes);
    while (lock.test_and_set(std::memory_order_acquire)) sched_yield();
  }
  ~locked() {
    lock.clear(std::memory_order_release);
    syscall(SYS_rt_sigprocmask, SIG_SETMASK, &saved, nullptr, kSigsetBytes);
  }
};

// Called with the lock held, so no thread leaves meanwhile.
void clear_entries(uint32_t number) {
  for (rt_thread* t = threads; t; t = t->next_thread)
    if (t->block.site_entries != nullptr)
      __atomic_store_n(&t->block.site_entries[number], nullptr, __ATOMIC_RELEASE);
}

} // namespace

void register_thread(rt_thread* t) {
  locked held;
  t->retirements_seen = retirement_count.load(std::memory_order_relaxed);
  t->next_thread = threads;
  threads = t;
}

void unregister_thread(rt_thread* t) {
  locked held;
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

void retire_code(app_pc start, app_pc end, bool still_mapped) {
  mappings_changed();
  const auto s = reinterpret_cast<uintptr_t>(start), e = reinterpret_cast<uintptr_t>(end);
  if (s > highest_translated.load() || e <= lowest_translated.load()) return;
  locked held;
  retire_sites_in(start, end, still_mapped, clear_entries);
  const uint64_t n = retirement_count.load(std::memory_order_relaxed);
  retired[n % kKeptRetirements] = {start, end};
  retirement_count.store(n + 1, std::memory_order_release);
}

void apply_code_retirements(rt_thread* t) {
  const uint64_t now = retirement_count.load(std::memory_order_acquire);
  if (t->retirements_seen == now) return;
  locked held;
  const uint64_t last = retirement_count.load(std::memory_order_relaxed);
  if (last - t->retirements_seen > kKeptRetirements) {
    retire_fragments_in(t, nullptr, reinterpret_cast<app_pc>(UINTPTR_MAX));
  } else {
    for (uint64_t n = t->retirements_seen; n < last; ++n) {
      const code_range& r = retired[n % kKeptRetirements];
      retire_fragments_in(t, r.start, r.end);
    }
  }
  t->retirements_seen = last;
}
