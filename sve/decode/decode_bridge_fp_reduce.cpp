// Bridge decoders. Floating-point reductions.
#include "../generic/fp_reductions.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_reduce(...) __VA_ARGS__
#include "expand_decoders.h"
