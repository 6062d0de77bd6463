// Bridge decoders. First-fault gathers, every form.
#include "../generic/first_fault.h"
#include "bridge_shapes_memory.h"

using namespace bridge_shapes;

// clang-format off
// clang-format on

#define DECODERS_bridge_gather_ff(...) __VA_ARGS__
#include "expand_decoders.h"
