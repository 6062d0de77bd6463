// The static host: for a statically linked program, the dynamic loader
// starts this instead, with the client and the runtime loaded as for any
// program. It puts the program's own AT_PHDR, AT_PHNUM and AT_ENTRY (which
// the loader left in entries of its own) into the auxiliary vector on the
// stack and jumps to the program's entry with the stack as the kernel would
// give it. Freestanding: no C library in the dynamic loader's namespace,
// whose heap would be the static program's.
#include <cstdint>

#include "static_handoff.h"

namespace {
constexpr uint64_t AT_NULL = 0, AT_PHDR = 3, AT_PHNUM = 5, AT_ENTRY = 9;
} // namespace

// The function the program's start registers for exit: the runtime's.
uint64_t exit_hook;

extern "C" uint64_t hand_over(uint64_t* sp) {
  const uint64_t argc = sp[0];
  uint64_t* p = sp + 1 + argc + 1;
  while (*p) ++p; // the environment
  uint64_t* aux = p + 1;
  uint64_t phdr = 0, phnum = 0, entry = 0;
  for (uint64_t* a = aux; a[0] != AT_NULL; a += 2) {
    if (a[0] == loader::kStaticAppPhdr) phdr = a[1];
    if (a[0] == loader::kStaticAppPhnum) phnum = a[1];
    if (a[0] == loader::kStaticAppEntry) entry = a[1];
    if (a[0] == loader::kStaticExitHook) exit_hook = a[1];
  }
  for (uint64_t* a = aux; a[0] != AT_NULL; a += 2) {
    if (a[0] == AT_PHDR) a[1] = phdr;
    if (a[0] == AT_PHNUM) a[1] = phnum;
    if (a[0] == AT_ENTRY) a[1] = entry;
  }
  return entry;
}

// The program's start gets the stack pointer as the dynamic loader gave it,
// and in X0 the function to register at exit.
asm(".text\n"
    ".globl host_start\n"
    "host_start:\n"
    "  mov x19, sp\n"
    "  mov x0, sp\n"
    "  bl hand_over\n"
    "  mov sp, x19\n"
    "  mov x16, x0\n"
    "  adrp x0, exit_hook\n"
    "  ldr x0, [x0, :lo12:exit_hook]\n"
    "  mov x19, xzr\n"
    "  mov x29, xzr\n"
    "  mov x30, xzr\n"
    "  br x16\n");
