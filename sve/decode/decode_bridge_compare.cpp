// Bridge decoders. Integer compares that set the flags.
#include "../generic/compare.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_compare(...) __VA_ARGS__
#include "expand_decoders.h"
