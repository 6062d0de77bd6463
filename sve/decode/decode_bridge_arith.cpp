// Bridge decoders. adr and dot products.
#include "../generic/arith.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_arith(...) __VA_ARGS__
#include "expand_decoders.h"
