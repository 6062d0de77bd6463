// Bridge decoders. The SVE2 integer forms.
#include "../generic/widen_narrow.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_sve2(...) __VA_ARGS__
#include "expand_decoders.h"
