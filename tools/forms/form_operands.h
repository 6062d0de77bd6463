// What a thin or bridge decoder can say about itself, for tools and tests:
// the running emulator never reads this.
#pragma once

#include <cstdint>

struct line_writer;

struct form_operands {
  // The arguments the decoder passes to its handler for a word.
  void (*describe)(line_writer& out, uint32_t word);
  // The field layout of those arguments, as "Z(4:0, rw), P(12:10, /m), Z(9:5)".
  void (*notation)(line_writer& out);
  uint32_t elem;       // the decoder's element size
  bool exchanges_fpsr; // the handler computes with the host's floating point
};
