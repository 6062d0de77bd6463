// Bridge decoders. insr, sunpk, splice and compact.
#include "../generic/permute.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_permute(...) __VA_ARGS__
#include "expand_decoders.h"
