// Layout of the page through which the native stub takes a machine state in
// and hands it back. Shared by the assembly stub and the C++ side.
#pragma once

#define FRAME_X 0      // X0..X30
#define FRAME_SP 248   // SP while the word runs
#define FRAME_NZCV 256 // as MRS NZCV reads it
#define FRAME_FPSR 264
#define FRAME_FPCR 272
#define FRAME_HOST 280 // the caller's X19..X30, D8..D15, SP, TPIDR_EL0, FPCR
#define FRAME_HOST_SP (FRAME_HOST + 160)
#define FRAME_HOST_TPIDR (FRAME_HOST + 168)
#define FRAME_HOST_FPCR (FRAME_HOST + 176)
#define FRAME_SLOT (FRAME_HOST + 184) // where the word to run waits
// Registers sit at the stride of the longest vector, whatever the length.
#define FRAME_Z 512 // Z0..Z31, FRAME_Z_STRIDE bytes apart
#define FRAME_Z_STRIDE 256
#define FRAME_P (FRAME_Z + 32 * FRAME_Z_STRIDE) // P0..P15 then FFR, packed
#define FRAME_P_STRIDE 32
#define FRAME_BYTES (FRAME_P + 17 * FRAME_P_STRIDE) // through the FFR

// The stub page, the frame pages and the page of word slots follow each
// other. A slot loads X16 from the frame, runs its word and branches back.
#define STUB_PAGE_BYTES 4096
#define FRAME_PAGES_BYTES (3 * STUB_PAGE_BYTES)
#define SLOT_BYTES 16
