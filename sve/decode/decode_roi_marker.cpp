// The decoder of the byte add-immediate, whose two shifted forms are the
// region-of-interest markers: the trace code sees the word before the add
// runs.
#include "../trace/roi.h"
#include "shapes.h"

using namespace shapes;

#undef THIN_DECODER
#define THIN_DECODER(name, shape_type, elem, handler, exchanges_fpsr)                              \
  aarch64_decode_rc name(cpu_state* s, uint32_t w) {                                               \
    roi_check_marker(w);                                                                           \
    return shape_type::run<elem, handler, exchanges_fpsr>(s, w);                                   \
  }

#define DECODERS_roi_marker(...) __VA_ARGS__
#include "expand_decoders.h"
