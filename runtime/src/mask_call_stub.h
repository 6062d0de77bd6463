// A statically linked program's rt_sigprocmask, made without a signal when
// the runtime has nothing to do for it.
//
// A trapped call costs a SIGILL round trip, a hundred times the call itself
// (far more under an emulator, or when the thread is descheduled meanwhile),
// and a signal that comes during it is delivered after it, as the kernel
// delivers one that comes during a call. Code that leaves a signal unwelcome
// for a few instructions around a mask call (sigsetjmp saves the mask, then
// notes that it did; a handler that siglongjmps in between restores none)
// would so meet that signal a hundred times as often. So the site's svc
// becomes a branch to a stub of its own, which makes the call with the
// program's own registers unless the call concerns the runtime: a set that
// names SIGILL, SIGSEGV or SIGBUS (which masks never block, while the program
// reads back what it set), or any thread that has ever put one of them into
// its view of its mask (whose reads the runtime answers). Then the stub runs
// the trap word, and the signal handler carries the call out as before.
//
//        stp  x9, x10, [sp, #-16]!
//        ldr  x9, view_flag_address
//        ldr  w9, [x9]
//        cbnz w9, trap            ; a view holds a runtime signal
//        cbz  x1, call            ; no new set: a read of the mask
//        ldr  x9, [x1]
//        ldr  x10, runtime_signal_bits
//        and  x9, x9, x10
//        cbnz x9, trap            ; the set names a runtime signal
//  call: ldp  x9, x10, [sp], #16
//        svc  #0
//        b    site + 4
//  trap: ldp  x9, x10, [sp], #16
//        udf  #0x5a43             ; the SIGILL handler takes it as at the site
//        .quad view_flag_address, runtime_signal_bits
//
// X9, X10 and the flags come back as they were, and SP is the program's at
// the svc. The stub borrows the 16 bytes below SP: a program cannot keep
// anything there, since a signal handler may be given them at any moment.
#pragma once

#include <signal.h>

#include <cstdint>

namespace mask_call_stub {

constexpr int kWords = 18;
constexpr int kTrapWord = 13;
constexpr uint32_t kTrap = 0x00005a43; // udf #0x5a43, as at a trapped site

constexpr uint64_t runtime_signal_bits() {
  return (uint64_t{1} << (SIGILL - 1)) | (uint64_t{1} << (SIGSEGV - 1)) |
         (uint64_t{1} << (SIGBUS - 1));
}

namespace word {
constexpr uint32_t kPushX9X10 = 0xa9bf2be9; // stp x9, x10, [sp, #-16]!
constexpr uint32_t kPopX9X10 = 0xa8c12be9;  // ldp x9, x10, [sp], #16
constexpr uint32_t kLoadW9FromX9 = 0xb9400129;
constexpr uint32_t kLoadX9FromX1 = 0xf9400029;
constexpr uint32_t kAndX9X10 = 0x8a0a0129;
constexpr uint32_t kSvc0 = 0xd4000001;

constexpr uint32_t imm19(int from, int to) { return (uint32_t(to - from) & 0x7ffff) << 5; }
constexpr uint32_t load_literal_x(int rt, int from, int to) {
  return 0x58000000 | imm19(from, to) | uint32_t(rt);
}
constexpr uint32_t cbz_x(int rt, int from, int to) {
  return 0xb4000000 | imm19(from, to) | uint32_t(rt);
}
constexpr uint32_t cbnz_x(int rt, int from, int to) {
  return 0xb5000000 | imm19(from, to) | uint32_t(rt);
}
constexpr uint32_t cbnz_w(int rt, int from, int to) {
  return 0x35000000 | imm19(from, to) | uint32_t(rt);
}
} // namespace word

// b from `from` to `to`; both within 128 MiB of each other.
constexpr uint32_t branch(uintptr_t from, uintptr_t to) {
  return 0x14000000 | (uint32_t((to - from) >> 2) & 0x3ffffff);
}

// Writes the stub at `stub` (kWords words, 8-byte aligned, within branch
// reach of site) for the svc at `site`. view_flag: a 32-bit word that is
// non-zero once any thread's view of its mask has held a runtime signal.
inline void write(uint32_t* stub, uintptr_t site, const uint32_t* view_flag) {
  using namespace word;
  constexpr int kCall = 9, kFlagLiteral = 14, kBitsLiteral = 16;
  const uint32_t words[kWords - 4] = {
      kPushX9X10,
      load_literal_x(9, 1, kFlagLiteral),
      kLoadW9FromX9,
      cbnz_w(9, 3, kTrapWord - 1),
      cbz_x(1, 4, kCall),
      kLoadX9FromX1,
      load_literal_x(10, 6, kBitsLiteral),
      kAndX9X10,
      cbnz_x(9, 8, kTrapWord - 1),
      kPopX9X10,
      kSvc0,
      branch(reinterpret_cast<uintptr_t>(stub + 11), site + 4),
      kPopX9X10,
      kTrap,
  };
  for (int i = 0; i < kWords - 4; ++i) stub[i] = words[i];
  const auto flag = reinterpret_cast<uint64_t>(view_flag);
  const uint64_t bits = runtime_signal_bits();
  stub[kFlagLiteral] = uint32_t(flag);
  stub[kFlagLiteral + 1] = uint32_t(flag >> 32);
  stub[kBitsLiteral] = uint32_t(bits);
  stub[kBitsLiteral + 1] = uint32_t(bits >> 32);
}

// The process's stubs (mask_call_stub.cpp), for a static program's sites.
// note_site: the svc at site is an rt_sigprocmask trapped already.
void note_site(uintptr_t site);
// Once every site is noted: each site within branch reach of the stubs
// (which lie near the first) branches to its own; the others keep their trap.
void make_stubs(const uint32_t* view_flag);
// The site whose stub's trap word is at pc, or 0.
uintptr_t site_of_trap(uintptr_t pc);

} // namespace mask_call_stub
