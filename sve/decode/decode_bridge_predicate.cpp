// Bridge decoders. Predicate logic, breaks, first active and ffr reads,
// ptrues that set flags, predicate permutes, while and cterm.
#include "../generic/predicate.h"
#include "bridge_shapes.h"

using namespace bridge_shapes;

#define DECODERS_bridge_predicate(...) __VA_ARGS__
#include "expand_decoders.h"
