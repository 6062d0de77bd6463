// Thin decoders of contiguous and structured stores, and of register spills.
#include "shapes.h"

using namespace shapes;

#define DECODERS_store(...) __VA_ARGS__
#include "expand_decoders.h"
