// How many elements a predicate-constraint pattern names at the process's
// vector length. Shared by ptrue and the element-count steps (inc, dec, uqdec).
#pragma once

#include "element.h"

namespace ZORVO_LENGTH {

// Pattern values as the instruction encodes them; 14 to 28 have no name.
enum predicate_pattern : unsigned {
  PATTERN_POW2 = 0,
  PATTERN_VL1 = 1,
  PATTERN_VL8 = 8,
  PATTERN_VL16 = 9,
  PATTERN_VL256 = 13,
  PATTERN_MUL4 = 29,
  PATTERN_MUL3 = 30,
  PATTERN_ALL = 31,
};

// The count for elements of sizeof(T) bytes. A fixed count that asks for
// more elements than the vector has gives 0, not the maximum.
template <typename T> inline unsigned pattern_count(unsigned pattern) {
  const unsigned elements = elements_of<T>();
  unsigned fixed;
  if (pattern == PATTERN_POW2) {
    fixed = kMaxVectorBytes;
    while (fixed > elements) fixed /= 2;
    return fixed;
  }
  if (pattern >= PATTERN_VL1 && pattern <= PATTERN_VL8)
    fixed = pattern;
  else if (pattern >= PATTERN_VL16 && pattern <= PATTERN_VL256)
    fixed = 1u << (pattern - 5);
  else if (pattern == PATTERN_MUL4)
    return elements & ~3u;
  else if (pattern == PATTERN_MUL3)
    return elements / 3 * 3;
  else if (pattern == PATTERN_ALL)
    return elements;
  else
    return 0;
  return fixed <= elements ? fixed : 0;
}

} // namespace ZORVO_LENGTH
