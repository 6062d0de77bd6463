// Thin decoders. Predicates: ptrue, pfalse, while, logic, break, next active, test, select,
// permutes, and the first-fault register.
#include "shapes.h"

using namespace shapes;

#define DECODERS_predicate(...) __VA_ARGS__
#include "expand_decoders.h"
