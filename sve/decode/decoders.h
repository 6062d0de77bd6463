// Every decoder named in the decode table. Thin and bridge decoders also
// have their description, `<name>_operands`. Prefetch rows share one decoder that does
// nothing.
#pragma once

#include <cstdint>

#include "cpu_state.h"
#include "thin_operands.h"

#define THIN(map, key, name, handler)                                                              \
  aarch64_decode_rc name(cpu_state*, uint32_t);                                                    \
  extern const thin_operands name##_operands;
#define BRIDGE(map, key, name)                                                                     \
  aarch64_decode_rc name(cpu_state*, uint32_t);                                                    \
  extern const thin_operands name##_operands;
#define EMPTY(map, key, name)
#include "decode_rows.inc"
#undef THIN
#undef BRIDGE
#undef EMPTY

aarch64_decode_rc sve_prefetch_nop(cpu_state*, uint32_t);
