// Thin decoders. Reductions across a vector and extraction of its last active lane.
#include "shapes.h"

using namespace shapes;

#define DECODERS_reduce(...) __VA_ARGS__
#include "expand_decoders.h"
