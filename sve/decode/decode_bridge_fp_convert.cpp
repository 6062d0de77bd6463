// Bridge decoders. Floating-point conversions and rounding to integral.
#include "../generic/fp_conversions.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_convert(...) __VA_ARGS__
#include "expand_decoders.h"
