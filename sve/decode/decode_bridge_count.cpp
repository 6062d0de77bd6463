// Bridge decoders. Element counts by pattern and their saturating steps.
#include "../generic/count.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_count(...) __VA_ARGS__
#include "expand_decoders.h"
