// The code lock, which serialises building and retiring fragments, and the
// retirement of code that leaves the process (a library closed, a range
// unmapped or made writable): its patched sites are forgotten and its
// fragments are never found again at once; their rooms in the code cache
// serve again once no thread can still be running in them.
#pragma once

#include <signal.h>

#include "thread.h"

// Held while fragments are looked up, built, linked or retired. The calling
// thread's signals are blocked meanwhile: its SIGILL handler takes the lock
// too.
class code_lock {
public:
  code_lock();
  // For the SIGILL handler, whose action blocks every signal already.
  struct signals_blocked_t {};
  static constexpr signals_blocked_t signals_blocked{};
  explicit code_lock(signals_blocked_t);
  ~code_lock();
  code_lock(const code_lock&) = delete;
  code_lock& operator=(const code_lock&) = delete;

private:
  sigset_t saved_;
  bool restore_ = true;
};

// The thread joins or leaves the set whose progress decides when a retired
// fragment's room may serve again.
void register_thread(rt_thread* t);
void unregister_thread(rt_thread* t);
// In a child made by fork, whose one thread is the one that forked: no lock
// of the runtime's is held (another thread of the parent may have held one),
// and the thread set holds that thread alone. Registered once, at start-up,
// as a fork handler; a statically linked program's fork reaches it through
// its trapped clone.
void only_forking_thread_left();
// A fragment was built for a block at tag: retirements of ranges that hold
// no such block cost nothing.
void note_translated(app_pc tag);
// The code in [start, end) is gone, or, still_mapped, may change before it
// runs again (its protection is changing). Called from outside fragments.
void retire_code(app_pc start, app_pc end, bool still_mapped = false);
// With the lock held: t runs in no fragment now (it is in the runtime's
// signal handler or a call it intercepted, with no application handler of
// its own interrupting one).
void seen_outside_fragments(rt_thread* t);
// With the lock held: a new retirement's number, for retire_fragment.
uint64_t next_retirement();
// With the lock held: every thread has been seen outside the fragments
// since this retirement.
uint64_t retirements_every_thread_is_past();
