// Bridge decoders. First-fault loads without a fast handler, and the
// replicating quadword and octaword loads, and the non-temporal gathers
// and scatters of a vector plus a scalar.
#include "../generic/first_fault.h"
#include "../generic/load_quad.h"
#include "../generic/sve2_memory.h"
#include "bridge_shapes_memory.h"

using namespace bridge_shapes;

// clang-format off

// clang-format on

#define DECODERS_bridge_memory(...) __VA_ARGS__
#include "expand_decoders.h"
