// Process-wide state of the runtime.
#pragma once

#include <atomic>
#include <cstdint>

#include "dr_api.h"
#include "drmgr.h"

// The runtime's own counters, printed by `zorvo --stats`.
struct runtime_counters {
  std::atomic<uint64_t> blocks_built;
  std::atomic<uint64_t> fragments;
  std::atomic<uint64_t> signals;
  std::atomic<uint64_t> fragment_entries;
  std::atomic<uint64_t> words_translated;     // SVE words in the fragments built
  std::atomic<uint64_t> code_bytes;           // code cache those fragments take
  std::atomic<uint64_t> system_calls_trapped; // a static program's, by SIGILL
};
extern runtime_counters counters;

struct runtime_settings {
  int log_level;        // dr_log prints at this level and below
  bool print_stats;     // one line of counters at exit
  bool entry_by_signal; // no site is patched: every block entry takes a signal
};
extern runtime_settings settings;

// Set once the client is loaded and the first thread attached.
extern std::atomic<bool> runtime_ready;
// Set once the exit events have run: from then on no block is built.
extern std::atomic<bool> runtime_shut_down;
// The thread that ran them.
extern std::atomic<long> exiting_thread;
// The process ends without running its exit handlers (exec, _exit, a fatal
// signal): the exit events run now. Nothing in a vfork child.
void process_ending();
// The same from a handler of the signal that ends the process.
void process_dying_by_signal();

// The events that clients registered, run by the runtime.
void run_thread_init_events(void* drcontext);
void run_thread_exit_events(void* drcontext);
void run_app2app_events(void* drcontext, void* tag, instrlist_t* bb);
void run_exit_events();

// The application's name as dr_get_application_name reports it: the
// basename of PATH.
void set_application_name(const char* path);

// The fork handlers registered in the runtime's namespace (interpose.cpp).
void run_fork_prepare();
void run_fork_parent();
void run_fork_child();
// What a child made by fork runs first, in the thread that forked: the
// runtime's own fork handler and the client's.
void process_forked();
