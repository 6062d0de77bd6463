// Bridge decoders. Floating-point add, subtract, multiply, sign and copy.
#include "../generic/fp_arith.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_arith(...) __VA_ARGS__
#include "expand_decoders.h"
