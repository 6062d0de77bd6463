// Bridge decoders. Floating-point fused multiply-add, indexed and complex
// forms.
#include "../generic/fp_fused.h"
#include "bridge_shapes_fp.h"

using namespace bridge_shapes;

#define DECODERS_bridge_fp_fused(...) __VA_ARGS__
#include "expand_decoders.h"
