// Thin decoders. Bitwise logic, shifts, bit reversal and sign or zero extension.
#include "shapes.h"

using namespace shapes;

#define DECODERS_bitwise(...) __VA_ARGS__
#include "expand_decoders.h"
