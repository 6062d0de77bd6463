// A statically linked program has no interposer: its C library makes its
// system calls with its own `svc` instructions. The runtime turns those of
// the calls it must see (signal actions and masks, the vector length
// controls, exit, exec, unmapping and reprotecting code) into a trap word, and
// carries them out in its SIGILL handler.
#pragma once

#include <link.h>
#include <ucontext.h>

// Finds the program's system call sites through its program headers (where
// the program is mapped) and patches those whose number is one of the
// runtime's, or comes from a register (the C library's syscall()). An
// exec'd AArch64 program starts through relaunch_command (see
// relaunch_command.h).
void trap_static_system_calls(const ElfW(Phdr) * phdr, int phnum, int vector_bytes,
                              bool vector_length_inherited, const char* relaunch_command);
// A SIGILL at one of those sites: the call is carried out for the program,
// its result in X0, and the context moves past the site; a clone goes to a
// trampoline of the site's, where the program makes it with its own svc.
// app_tp: the program's thread pointer as enter_runtime_tls gave it back.
// False for any other SIGILL.
bool take_static_system_call(ucontext_t* uc, uint64_t app_tp);
// A SIGILL at the trap after a trampoline's svc, in the thread that made
// the clone or in the new one: the context goes on after the site. Uses no
// thread-local storage, so that it can come first: the new thread, or a
// vfork child, has nothing of the runtime's yet. in_forked_child: the new
// thread is a fork's child, a process of its own, which must run the
// runtime's fork handlers before anything else of the runtime's.
enum class clone_return { none, done, in_forked_child };
clone_return take_clone_return(ucontext_t* uc);
