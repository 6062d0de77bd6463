// Thin decoders. Integer compares into a predicate.
#include "shapes.h"

using namespace shapes;

#define DECODERS_compare(...) __VA_ARGS__
#include "expand_decoders.h"
