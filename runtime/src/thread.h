// One application thread as the runtime sees it. Its address is the thread's
// drcontext, and inside a fragment the stolen register X28 holds it too.
#pragma once

#include <sys/types.h>

#include <cstddef>

#include "arena.h"
#include "dr_api.h"

// The words that generated code reaches through X28, at fixed offsets.
struct thread_block {
  reg_t spill[SPILL_SLOT_MAX + 1];
  reg_t app_x28;      // the application's X28 while its fragment runs
  reg_t probe_save;   // the application's X0 around the FPCR probe
  reg_t call_scratch; // X30 while a call changes stacks
  reg_t call_app_sp;  // the stack pointer a call returns to
  reg_t stack_top;    // top of the thread's runtime stack
  // The fragment for each patched site, by site number, as the site's stub
  // looks it up: the process's table, the same for every thread.
  byte** site_entries;
  reg_t branch_entries; // fragment entries by branch, counted by the fragments
  // In a statically linked program, whose C library owns TPIDR_EL0: the
  // runtime's thread pointer, and the program's while an emulation call runs.
  reg_t runtime_tp;
  reg_t app_tp;
};

constexpr int kSpillOffset = offsetof(thread_block, spill);
constexpr int kAppX28Offset = offsetof(thread_block, app_x28);
constexpr int kProbeSaveOffset = offsetof(thread_block, probe_save);
constexpr int kCallScratchOffset = offsetof(thread_block, call_scratch);
constexpr int kCallAppSpOffset = offsetof(thread_block, call_app_sp);
constexpr int kStackTopOffset = offsetof(thread_block, stack_top);
constexpr int kSiteEntriesOffset = offsetof(thread_block, site_entries);
constexpr int kBranchEntriesOffset = offsetof(thread_block, branch_entries);
constexpr int kRuntimeTpOffset = offsetof(thread_block, runtime_tp);
constexpr int kAppTpOffset = offsetof(thread_block, app_tp);

// A block's translation: code in the code cache, or null when the block's
// first instruction is one the client left alone, so that the signal at that
// address is the application's own.
struct fragment {
  app_pc tag;
  byte* code;
  // Of the application's words the fragment was built from: code mapped
  // anew or rewritten at the same address has another.
  uint64_t fingerprint;
};

struct fragment_table {
  fragment* slots;
  uint32_t capacity; // a power of two
  uint32_t count;    // used slots, retired ones included
  uint32_t retired;
};

constexpr int kMaxTlsFields = 64;

struct rt_thread {
  thread_block block; // first: X28 and the drcontext are the same address
  void* tls_fields[kMaxTlsFields];
  arena build_arena; // the instructions of the block being built
  // How many of the process's code retirements had happened when the thread
  // was last seen outside every fragment: it can be in no fragment retired
  // by then, so their rooms may serve again once every thread is past them.
  uint64_t retirements_seen;
  rt_thread* next_thread; // all threads
  byte* stack;
  size_t stack_size;
  pid_t tid;
  // What the application's signal handlers now running on the thread
  // interrupted (interrupted.h), innermost last; mapped on first use.
  void* interrupted[16];
  int interrupted_depth;
  // Runtime stacks for the emulation calls of handlers that interrupted
  // one, mapped on first use.
  byte* nested_stacks[16];
};
static_assert(offsetof(rt_thread, block) == 0);

// The calling thread, or null if the runtime has not met it yet.
rt_thread* current_thread();
// Where that pointer lies relative to the thread pointer (TPIDR_EL0): the
// same for every thread, so generated code can find its thread without a
// register of its own.
ptrdiff_t current_thread_tls_offset();
// Makes the calling thread known to the runtime and runs the thread-init
// events; returns the thread, or null when memory ran out.
rt_thread* attach_thread();
// Which of the thread's runtime stacks holds sp: 0 the first, k + 1 nested
// stack k; -1 none.
int runtime_stack_of(const rt_thread* t, uintptr_t sp);
constexpr int kRuntimeStacks = 1 + sizeof(rt_thread::nested_stacks) / sizeof(byte*);
// The top of runtime stack n (as runtime_stack_of counts), or 0 when no
// memory is left for it.
uintptr_t runtime_stack_top(rt_thread* t, int n);
// Runs the thread-exit events and frees everything the thread had.
void detach_thread(rt_thread* t);

// A statically linked program's C library points TPIDR_EL0 at its own
// thread block, where the runtime's thread-local storage (its own, its C
// library's, the client's) is not. The runtime then keeps the thread pointer
// it started with and switches to it on every entry: its signal handlers
// here, emulation calls in the code they emit. Threads the program makes
// get their runtime thread pointer when they first enter the runtime. The
// site stubs find a static program's threads through the word of its TCB
// that its C library does not use, which leave_runtime_tls keeps.
void keep_runtime_thread_pointer();
bool separate_thread_pointer();
// In a child made by fork, before the thread enters the runtime: no
// allocation of runtime thread blocks is under way, and in a statically
// linked program the thread that forked, whose thread id changed, keeps its
// runtime thread pointer and state. Uses no thread-local storage.
void runtime_tls_after_fork();
// Switches to the runtime's thread pointer; returns the one to give back
// (0: nothing to give back). Uses no thread-local storage before the switch.
uint64_t enter_runtime_tls();
void leave_runtime_tls(uint64_t app_tp);
// A raw clone made a thread that runs with its creator's thread pointer, so
// the TCB word cannot name the thread for both: from now on it names none,
// and the site stubs of both threads take the signal path, which finds each
// thread by its id.
void thread_pointer_shared(uint64_t app_tp);
// The thread pointer the program's own code runs with, for a handler of the
// program's: app_tp as enter_runtime_tls gave it back, or, when the signal
// came while the runtime's was live (inside a run of emulated words, an
// emulation call or one of the runtime's handlers), the one the thread
// block keeps. 0 outside static programs.
uint64_t program_thread_pointer(uint64_t app_tp);
