// Every decoder named in forms.inc. Prefetch rows share one decoder that
// does nothing.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"

#define DECLARE_DECODER(name) aarch64_decode_rc name(cpu_state*, uint32_t);
#define THIN(family, map, key, name, shape, elem, handler, mnemonic) DECLARE_DECODER(name)
#define BRIDGE(family, map, key, name, shape, elem, mnemonic) DECLARE_DECODER(name)
#include "forms.inc"
#undef DECLARE_DECODER

aarch64_decode_rc sve_prefetch_nop(cpu_state*, uint32_t);
