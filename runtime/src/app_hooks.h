// The runtime's side of the interposer that the dynamic loader preloads into
// the application's namespace. The runtime itself lives in a namespace of its
// own (it is the dynamic loader's audit module, so that it is ready before
// any of the application's code runs); calls the application makes to the C
// library functions the runtime stands in front of cross over through this
// table, which the runtime writes into the interposer when it is mapped.
#pragma once

#include <signal.h>
#include <stddef.h>

struct app_hooks {
  int (*sigaction)(int, const struct sigaction*, struct sigaction*);
  int (*sigprocmask)(int, const sigset_t*, sigset_t*);
  int (*pthread_sigmask)(int, const sigset_t*, sigset_t*);
  void (*thread_started)();
  void (*thread_exiting)();
  void (*process_exiting)();
  // Before an exec replaces the process: the exit events run, so that the
  // client finishes its trace file (not in the child of a vfork, which
  // shares the parent's memory).
  void (*before_exec)();
  // The process ends without its exit handlers (_exit, _Exit): the exit
  // events run all the same, so that no trace record is lost.
  void (*ending_without_exit_handlers)();
  // fork handlers registered in the runtime's namespace, which the
  // application's C library does not know about
  void (*fork_prepare)();
  void (*fork_parent)();
  void (*fork_child)();
  // The application unmapped [start, start + length): translations of code
  // there are retired.
  void (*code_unmapped)(void* start, size_t length);
  // The application is about to change the protection of [start, start +
  // length): translations of code there are retired, since what runs there
  // next may be written meanwhile.
  void (*code_protection_changing)(void* start, size_t length);
  // The mappings changed (a protection change done, a MAP_FIXED mapping made
  // over others): what the runtime remembers of them is read again. Told
  // after the change as well as before it, since another thread may read
  // them in between.
  void (*mappings_changed)();
  int vector_bytes;
  // PR_SVE_VL_INHERIT was set in the thread that exec'd this program.
  bool vector_length_inherited;
  // The command that starts a program under zorvo with this run's options,
  // words separated by '\x1f'; an exec'd AArch64 program goes through it.
  const char* relaunch;
  // The program's file, for an exec of /proc/self/exe (which names the
  // loader).
  const char* program_path;
};

// The interposer's variable that receives the table.
#define ZORVO_APP_HOOKS_SYMBOL "zorvo_app_hooks"
