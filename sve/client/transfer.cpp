#include "transfer.h"

#include <cstddef>

#include "emulate.h"

// The routines below address the record with these offsets.
static_assert(offsetof(cpu_state, regs) == 0 && offsetof(cpu_state, regs[26]) == 208);
static_assert(offsetof(cpu_state, regs[31]) == 248 && offsetof(cpu_state, nzcv) == 264);
static_assert(offsetof(cpu_state, fpsr) == 272 && offsetof(cpu_state, fpcr) == 276);
static_assert(record_offset::z == 288 && record_offset::z_stride == 256);
static_assert(record_offset::emulating == 16648);

// FPCR is read at every transfer rather than shadowed at each write: a block
// holds only SVE words, so it cannot change between the entry and the calls.
// Nothing writes FPCR back, since no SVE instruction changes it.
asm(R"(
  // x3 = decoder, w1 = word, the record's pc = the word's address; x30
  // moves past the word_call that follows the caller's blr.
  .macro take_word_call
  ldp x3, x2, [x30]
  ldr w1, [x30, #16]
  add x30, x30, #24
  str x2, [x19, #256]
  .endm

  .text
  .p2align 4
  .globl zorvo_transfer_in
  .hidden zorvo_transfer_in
  .type zorvo_transfer_in, %function
zorvo_transfer_in:
  stp x0, x1, [x27, #0]
  stp x2, x3, [x27, #16]
  stp x4, x5, [x27, #32]
  stp x6, x7, [x27, #48]
  stp x8, x9, [x27, #64]
  stp x10, x11, [x27, #80]
  stp x12, x13, [x27, #96]
  stp x14, x15, [x27, #112]
  stp x16, x17, [x27, #128]
  stp x18, x19, [x27, #144]
  stp x20, x21, [x27, #160]
  stp x22, x23, [x27, #176]
  stp x24, x25, [x27, #192]
  mov x0, sp
  str x0, [x27, #248]
  mov sp, x26
  mrs x0, nzcv
  str x0, [x27, #264]
  mrs x0, fpsr
  str w0, [x27, #272]
  mrs x0, fpcr
  str w0, [x27, #276]
  mov x0, #1
  str x0, [x27, #16648]
  .irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31
  str q\n, [x27, #288 + 256 * \n]
  .endr
  mov x19, x27
  adrp x20, zorvo_call_word
  add x20, x20, :lo12:zorvo_call_word
  adrp x21, zorvo_call_thin_word
  add x21, x21, :lo12:zorvo_call_thin_word
  ret
  .size zorvo_transfer_in, . - zorvo_transfer_in

  .p2align 4
  .globl zorvo_call_thin_word
  .hidden zorvo_call_thin_word
  .type zorvo_call_thin_word, %function
zorvo_call_thin_word:
  take_word_call
  mov x0, x19
  br x3
  .size zorvo_call_thin_word, . - zorvo_call_thin_word

  .p2align 4
  .globl zorvo_call_word
  .hidden zorvo_call_word
  .type zorvo_call_word, %function
zorvo_call_word:
  take_word_call
  stp x29, x30, [sp, #-16]!
  mov x0, x19
  blr x3
  ldp x29, x30, [sp], #16
  cbnz w0, 1f
  ret
1:
  ldr x0, [x19, #256]
  b report_failure_to_emulate
  .size zorvo_call_word, . - zorvo_call_word

  .p2align 4
  .globl zorvo_transfer_out
  .hidden zorvo_transfer_out
  .type zorvo_transfer_out, %function
zorvo_transfer_out:
  str xzr, [x27, #16648]
  ldr w0, [x27, #272]
  msr fpsr, x0
  ldr x0, [x27, #264]
  msr nzcv, x0
  .irp n, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31
  ldr q\n, [x27, #288 + 256 * \n]
  .endr
  ldr x0, [x27, #248]
  mov sp, x0
  ldp x0, x1, [x27, #0]
  ldp x2, x3, [x27, #16]
  ldp x4, x5, [x27, #32]
  ldp x6, x7, [x27, #48]
  ldp x8, x9, [x27, #64]
  ldp x10, x11, [x27, #80]
  ldp x12, x13, [x27, #96]
  ldp x14, x15, [x27, #112]
  ldp x16, x17, [x27, #128]
  ldp x18, x19, [x27, #144]
  ldp x20, x21, [x27, #160]
  ldp x22, x23, [x27, #176]
  ldp x24, x25, [x27, #192]
  ldr x26, [x27, #208]
  ret
  .size zorvo_transfer_out, . - zorvo_transfer_out
)");

static_assert(sizeof(word_call) == 24 && offsetof(word_call, word) == 16);
