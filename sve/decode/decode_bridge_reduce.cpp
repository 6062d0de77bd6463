// Bridge decoders. Signed add reduction and the last-active-lane picks.
#include "../generic/reduce.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_reduce(...) __VA_ARGS__
#include "expand_decoders.h"
