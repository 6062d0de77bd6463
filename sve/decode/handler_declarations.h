// The fast handlers, declared from their rows in forms.inc: a handler's type
// follows from its decoder's shape (the cpu_state, then one argument per
// operand kind). A handler that several rows name is declared once per row,
// always alike; a definition whose arguments differ does not link.
#pragma once

#include "../state/vector_length.h"
#include "shapes.h"

namespace ZORVO_LENGTH {

#define THIN(family, map, key, name, shape, elem, handler, mnemonic)                               \
  shapes::shape::handler_type handler;
#include "forms.inc"
} // namespace ZORVO_LENGTH
