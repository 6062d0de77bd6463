// Thin decoders. Floating point: arithmetic, multiply-add, compares, conversions, rounding,
// estimates and reductions.
#include "shapes.h"

using namespace shapes;

#define DECODERS_fp_arith(...) __VA_ARGS__
#include "expand_decoders.h"
