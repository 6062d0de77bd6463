// Thin decoders. Gather loads and scatter stores.
#include "shapes.h"

using namespace shapes;

#define DECODERS_gather_scatter(...) __VA_ARGS__
#include "expand_decoders.h"
