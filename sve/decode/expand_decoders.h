// Defines the decoders of one family of forms.inc, the family that the
// including file selects before it includes this header:
//
//   #define DECODERS_int_arith(...) __VA_ARGS__
//   #include "expand_decoders.h"
//
// Every other family's rows expand to nothing. The including file brings the
// shapes, and for bridge decoders the generic functions, that its rows use.
// No include guard: each decoder file includes this once.

#include "handler_declarations.h"

#ifndef DECODERS_bitwise
#define DECODERS_bitwise(...)
#endif
#ifndef DECODERS_bridge_arith
#define DECODERS_bridge_arith(...)
#endif
#ifndef DECODERS_bridge_compare
#define DECODERS_bridge_compare(...)
#endif
#ifndef DECODERS_bridge_count
#define DECODERS_bridge_count(...)
#endif
#ifndef DECODERS_bridge_fp_arith
#define DECODERS_bridge_fp_arith(...)
#endif
#ifndef DECODERS_bridge_fp_compare
#define DECODERS_bridge_fp_compare(...)
#endif
#ifndef DECODERS_bridge_fp_convert
#define DECODERS_bridge_fp_convert(...)
#endif
#ifndef DECODERS_bridge_fp_estimate
#define DECODERS_bridge_fp_estimate(...)
#endif
#ifndef DECODERS_bridge_fp_fused
#define DECODERS_bridge_fp_fused(...)
#endif
#ifndef DECODERS_bridge_fp_minmax
#define DECODERS_bridge_fp_minmax(...)
#endif
#ifndef DECODERS_bridge_fp_reduce
#define DECODERS_bridge_fp_reduce(...)
#endif
#ifndef DECODERS_bridge_gather_ff
#define DECODERS_bridge_gather_ff(...)
#endif
#ifndef DECODERS_bridge_integer
#define DECODERS_bridge_integer(...)
#endif
#ifndef DECODERS_bridge_memory
#define DECODERS_bridge_memory(...)
#endif
#ifndef DECODERS_bridge_permute
#define DECODERS_bridge_permute(...)
#endif
#ifndef DECODERS_bridge_predicate
#define DECODERS_bridge_predicate(...)
#endif
#ifndef DECODERS_bridge_reduce
#define DECODERS_bridge_reduce(...)
#endif
#ifndef DECODERS_bridge_scount
#define DECODERS_bridge_scount(...)
#endif
#ifndef DECODERS_bridge_sve2
#define DECODERS_bridge_sve2(...)
#endif
#ifndef DECODERS_compare
#define DECODERS_compare(...)
#endif
#ifndef DECODERS_count
#define DECODERS_count(...)
#endif
#ifndef DECODERS_fp_arith
#define DECODERS_fp_arith(...)
#endif
#ifndef DECODERS_gather_scatter
#define DECODERS_gather_scatter(...)
#endif
#ifndef DECODERS_int_arith
#define DECODERS_int_arith(...)
#endif
#ifndef DECODERS_load
#define DECODERS_load(...)
#endif
#ifndef DECODERS_permute
#define DECODERS_permute(...)
#endif
#ifndef DECODERS_predicate
#define DECODERS_predicate(...)
#endif
#ifndef DECODERS_reduce
#define DECODERS_reduce(...)
#endif
#ifndef DECODERS_roi_marker
#define DECODERS_roi_marker(...)
#endif
#ifndef DECODERS_store
#define DECODERS_store(...)
#endif

#define THIN(family, map, key, name, shape, elem, handler, mnemonic)                               \
  DECODERS_##family(THIN_DECODER(name, shape, elem, handler, false))
#define THIN_FP(family, map, key, name, shape, elem, handler, mnemonic)                            \
  DECODERS_##family(THIN_DECODER(name, shape, elem, handler, true))
#define BRIDGE(family, map, key, name, shape, elem, mnemonic)                                      \
  DECODERS_##family(BRIDGE_DECODER(name, shape, elem))
namespace ZORVO_LENGTH {
#include "forms.inc"
} // namespace ZORVO_LENGTH
