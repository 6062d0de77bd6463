// Bridge decoders. Steps by the active count of a predicate: saturating
// scalar forms, decrements, and vector forms.
#include "../generic/count.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_scount(...) __VA_ARGS__
#include "expand_decoders.h"
