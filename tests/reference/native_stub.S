// The native half of the reference check: load a whole machine state, run
// one instruction word, store the whole state back. The code is a template:
// it is copied into a writable and executable page, followed by the frame
// page (native_frame.h) and the page of word slots. Everything it reaches
// is addressed relative to its own position.
#include "native_frame.h"

  .arch armv8.2-a+sve

// The caller's callee-saved registers, to or from the frame.
.macro host_registers op
  \op x19, x20, [x16, #FRAME_HOST + 0]
  \op x21, x22, [x16, #FRAME_HOST + 16]
  \op x23, x24, [x16, #FRAME_HOST + 32]
  \op x25, x26, [x16, #FRAME_HOST + 48]
  \op x27, x28, [x16, #FRAME_HOST + 64]
  \op x29, x30, [x16, #FRAME_HOST + 80]
  \op d8, d9, [x16, #FRAME_HOST + 96]
  \op d10, d11, [x16, #FRAME_HOST + 112]
  \op d12, d13, [x16, #FRAME_HOST + 128]
  \op d14, d15, [x16, #FRAME_HOST + 144]
.endm

// The state's general registers in pairs, all but X16 (the frame pointer
// here), X17 (the scratch register) and X30.
.macro state_registers op
  \op x0, x1, [x16, #FRAME_X + 0]
  \op x2, x3, [x16, #FRAME_X + 16]
  \op x4, x5, [x16, #FRAME_X + 32]
  \op x6, x7, [x16, #FRAME_X + 48]
  \op x8, x9, [x16, #FRAME_X + 64]
  \op x10, x11, [x16, #FRAME_X + 80]
  \op x12, x13, [x16, #FRAME_X + 96]
  \op x14, x15, [x16, #FRAME_X + 112]
  \op x18, x19, [x16, #FRAME_X + 144]
  \op x20, x21, [x16, #FRAME_X + 160]
  \op x22, x23, [x16, #FRAME_X + 176]
  \op x24, x25, [x16, #FRAME_X + 192]
  \op x26, x27, [x16, #FRAME_X + 208]
  \op x28, x29, [x16, #FRAME_X + 224]
.endm

  .text
  .p2align 2

  .global reference_stub_begin
  .global reference_stub_resume
  .global reference_stub_end
reference_stub_begin:
.Lbegin:
  adr x16, .Lbegin + STUB_PAGE_BYTES
  // What the caller needs back: callee-saved registers, SP, the thread
  // pointer (borrowed below as the one free place to park a register) and FPCR.
  host_registers stp
  mov x17, sp
  str x17, [x16, #FRAME_HOST_SP]
  mrs x17, tpidr_el0
  str x17, [x16, #FRAME_HOST_TPIDR]
  mrs x17, fpcr
  str x17, [x16, #FRAME_HOST_FPCR]

  // Registers lie a fixed stride apart, not a vector length: each address is
  // stepped to rather than scaled.
  mov x17, #(FRAME_P + 16 * FRAME_P_STRIDE)
  add x17, x16, x17
  ldr p0, [x17]
  wrffr p0.b
  mov x17, #FRAME_P
  add x17, x16, x17
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15
  ldr p\n, [x17]
  add x17, x17, #FRAME_P_STRIDE
  .endr
  add x17, x16, #FRAME_Z
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  ldr z\n, [x17]
  add x17, x17, #FRAME_Z_STRIDE
  .endr
  ldr x17, [x16, #FRAME_NZCV]
  msr nzcv, x17
  ldr x17, [x16, #FRAME_FPSR]
  msr fpsr, x17
  ldr x17, [x16, #FRAME_FPCR]
  msr fpcr, x17
  ldr x17, [x16, #FRAME_SP]
  mov sp, x17
  state_registers ldp
  ldr x17, [x16, #FRAME_X + 136]
  ldr x30, [x16, #FRAME_X + 240]
  // The slot takes X16 from the frame itself before its word runs.
  ldr x16, [x16, #FRAME_SLOT]
  br x16

  // The slot branches back here. Every general register holds a result,
  // so X16 waits in TPIDR_EL0 while it becomes the frame pointer again.
reference_stub_resume:
  msr tpidr_el0, x16
  adr x16, .Lbegin + STUB_PAGE_BYTES
  state_registers stp
  str x17, [x16, #FRAME_X + 136]
  str x30, [x16, #FRAME_X + 240]
  mrs x17, tpidr_el0
  str x17, [x16, #FRAME_X + 128]
  mov x17, sp
  str x17, [x16, #FRAME_SP]
  mrs x17, nzcv
  str x17, [x16, #FRAME_NZCV]
  mrs x17, fpsr
  str x17, [x16, #FRAME_FPSR]
  add x17, x16, #FRAME_Z
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17,18,19,20,21,22,23,24,25,26,27,28,29,30,31
  str z\n, [x17]
  add x17, x17, #FRAME_Z_STRIDE
  .endr
  mov x17, #FRAME_P
  add x17, x16, x17
  .irp n, 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15
  str p\n, [x17]
  add x17, x17, #FRAME_P_STRIDE
  .endr
  rdffr p0.b
  str p0, [x17]

  ldr x17, [x16, #FRAME_HOST_TPIDR]
  msr tpidr_el0, x17
  ldr x17, [x16, #FRAME_HOST_FPCR]
  msr fpcr, x17
  ldr x17, [x16, #FRAME_HOST_SP]
  mov sp, x17
  host_registers ldp
  ret
reference_stub_end:

  // The vector length of this processor in bytes.
  .global reference_vector_bytes
reference_vector_bytes:
  rdvl x0, #1
  ret

  .section .note.GNU-stack, "", %progbits
