#include "inline_run.h"

#include <sys/mman.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "client/inline_forms.h"

// Enters the emitted code (X1) with the record in X19, the thin call entry in
// X21 and the trace gate in X22, as a run does, and the way back in X20, and keeps what the
// procedure call standard asks the caller to find again: the code may use any vector register and
// X9 to X15.
extern "C" void zorvo_enter_inline(cpu_state* record, const uint32_t* code, uint64_t fpcr,
                                   uint64_t gate);
static_assert(offsetof(cpu_state, pc) == 256);
asm(R"(
  .text
  .p2align 4
  .type zorvo_reference_thin_call, %function
zorvo_reference_thin_call:
  ldp x3, x2, [x30]
  ldr w1, [x30, #16]
  add x30, x30, #24
  str x2, [x19, #256]
  mov x0, x19
  br x3
  .size zorvo_reference_thin_call, . - zorvo_reference_thin_call

  .p2align 4
  .type zorvo_enter_inline, %function
zorvo_enter_inline:
  stp x29, x30, [sp, #-128]!
  stp x19, x20, [sp, #16]
  stp x21, x22, [sp, #112]
  adr x21, zorvo_reference_thin_call
  mov x22, x3
  stp d8, d9, [sp, #32]
  stp d10, d11, [sp, #48]
  stp d12, d13, [sp, #64]
  stp d14, d15, [sp, #80]
  mrs x9, fpcr
  str x9, [sp, #96]
  msr fpcr, x2
  mov x19, x0
  adr x20, 1f
  br x1
1:
  ldr x9, [sp, #96]
  msr fpcr, x9
  ldp d14, d15, [sp, #80]
  ldp d12, d13, [sp, #64]
  ldp d10, d11, [sp, #48]
  ldp d8, d9, [sp, #32]
  ldp x21, x22, [sp, #112]
  ldp x19, x20, [sp, #16]
  ldp x29, x30, [sp], #128
  ret
  .size zorvo_enter_inline, . - zorvo_enter_inline
)");

namespace {

// The code ends in `br x20`: X30 is free inside a run, and a call path
// taken from inside the code changes it.
constexpr uint32_t kReturn = 0xd61f0000 | 20 << 5;

// Code goes into a ring of slots, so that a slot is written again only long
// after it last ran: rewriting code that ran is what an emulated host pays
// for most.
constexpr unsigned kSlotWords = kInlineMaxWords + 1;
constexpr unsigned kSlots = 512;

uint32_t* code_area() {
  static uint32_t* area = [] {
    void* p = mmap(nullptr, kSlots * kSlotWords * 4, PROT_READ | PROT_WRITE | PROT_EXEC,
                   MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (p == MAP_FAILED) {
      std::perror("zorvo-reference: no memory for the inline tier's code");
      std::exit(2);
    }
    return static_cast<uint32_t*>(p);
  }();
  return area;
}

} // namespace

bool run_inline(uint32_t word, uint64_t pc, uint64_t fpcr, bool tracing, cpu_state* s) {
  inline_code code;
  if (!translate_inline(word, pc, &code)) return false;
  run_inline_code(code, fpcr, tracing, s);
  return true;
}

void run_inline_code(const inline_code& code, uint64_t fpcr, bool tracing, cpu_state* s) {
  static unsigned next_slot = 0;
  uint32_t* slot = code_area() + (next_slot++ % kSlots) * kSlotWords;
  std::memcpy(slot, code.words, 4 * code.count);
  slot[code.count] = kReturn;
  __builtin___clear_cache(reinterpret_cast<char*>(slot),
                          reinterpret_cast<char*>(slot + code.count + 1));
  zorvo_enter_inline(s, slot, fpcr, tracing);
}
