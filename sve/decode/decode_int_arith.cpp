// Thin decoders. Integer arithmetic: add, subtract, multiply, divide, minimum and maximum,
// multiply-add, negate, index, vector-length arithmetic and move-prefix.
#include "shapes.h"

using namespace shapes;

#define DECODERS_int_arith(...) __VA_ARGS__
#include "expand_decoders.h"
