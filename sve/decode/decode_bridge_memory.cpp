// Bridge decoders. First-fault loads without a fast handler, and the
// replicating quadword loads.
#include "../generic/first_fault.h"
#include "../generic/load_quad.h"
#include "bridge_shapes_memory.h"

using namespace bridge_shapes;

// clang-format off

// clang-format on

#define DECODERS_bridge_memory(...) __VA_ARGS__
#include "expand_decoders.h"
