// Every decoder named in forms.inc. Prefetch rows share one decoder that
// does nothing. Thin decoders exist once for each compilation of the fast
// handlers (vector_length.h); bridge decoders only in the one for any length.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "../state/vector_length.h"

namespace ZORVO_LENGTH {

#define DECLARE_DECODER(name) aarch64_decode_rc name(cpu_state*, uint32_t);
#define THIN(family, map, key, name, shape, elem, handler, mnemonic) DECLARE_DECODER(name)
#define BRIDGE(family, map, key, name, shape, elem, mnemonic) DECLARE_DECODER(name)
#include "forms.inc"
#undef DECLARE_DECODER

// Each row's thin decoder in this compilation, null for the other rows.
const sve_decoder* thin_decoders();
} // namespace ZORVO_LENGTH

aarch64_decode_rc sve_prefetch_nop(cpu_state*, uint32_t);
