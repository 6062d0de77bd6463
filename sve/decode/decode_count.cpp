// Thin decoders. Element counts and steps: cntp, incp, and increments or decrements by a
// predicate pattern.
#include "shapes.h"

using namespace shapes;

#define DECODERS_count(...) __VA_ARGS__
#include "expand_decoders.h"
