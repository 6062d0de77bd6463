// Bridge decoders. Floating-point comparisons.
#include "../generic/fp_comparisons.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_compare(...) __VA_ARGS__
#include "expand_decoders.h"
