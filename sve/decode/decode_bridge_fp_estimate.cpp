// Bridge decoders. Floating-point estimates, Newton steps, scaling and the
// trigonometric and exponential helpers.
#include "../generic/fp_estimates.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_estimate(...) __VA_ARGS__
#include "expand_decoders.h"
