// How many elements a predicate-constraint pattern names at our fixed vector
// length. Shared by ptrue and the element-count steps (inc, dec, uqdec).
#pragma once

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

// The count for elements of sizeof(T) bytes, so 48, 24, 12 or 6 of them. A
// fixed count that asks for more elements than the vector has gives 0, not
// the maximum. The element count is a build-time constant for each T, so the
// chain of compares folds per size.
template <typename T> constexpr unsigned pattern_count(unsigned pattern) {
  constexpr unsigned elements = 48 / sizeof(T);
  unsigned fixed;
  if (pattern == PATTERN_POW2) {
    fixed = 32;
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
