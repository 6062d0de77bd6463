// Bridge decoders. Element-wise integer arithmetic, shifts and unary
// operations.
#include "../generic/integer.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_integer(...) __VA_ARGS__
#include "expand_decoders.h"
