// The form a handler takes until it exists: it says so and returns 2.
#pragma once

#include <cstdio>

#include "../state/cpu_state.h"

inline aarch64_decode_rc report_unimplemented(const cpu_state* s, const char* handler) {
  std::fprintf(stderr, "Unimplemented instruction: [  %tx:\t %08x\t %s  ]\n",
               static_cast<ptrdiff_t>(s->pc), static_cast<unsigned>(s->raw_instr), handler);
  return AARCH64_DECODE_UNIMPLEMENTED;
}

#define SVE_STUB_HANDLER(name, ...)                                                                \
  aarch64_decode_rc name(cpu_state* s, __VA_ARGS__) { return report_unimplemented(s, #name); }
#define SVE_STUB_HANDLER_NO_OPERANDS(name)                                                         \
  aarch64_decode_rc name(cpu_state* s) { return report_unimplemented(s, #name); }
