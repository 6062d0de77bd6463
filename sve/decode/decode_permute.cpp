// Thin decoders. Permutes and copies: dup, cpy, ext, select, table lookup, reverse, interleave
// and unpack of vectors.
#include "shapes.h"

using namespace shapes;

#define DECODERS_permute(...) __VA_ARGS__
#include "expand_decoders.h"
