// Bridge decoders. Floating-point divide, square root, minimum and maximum, and
// the minimum and maximum reductions.
#include "../generic/fp_minmax_div.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_minmax(...) __VA_ARGS__
#include "expand_decoders.h"
