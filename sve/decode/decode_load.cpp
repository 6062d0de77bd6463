// Thin decoders of contiguous, structured, replicating, first-fault and non-fault loads, and of
// register fills.
#include "shapes.h"

using namespace shapes;

#define DECODERS_load(...) __VA_ARGS__
#include "expand_decoders.h"
