// Scans over one predicate at an element stride: where its last active
// element is, how many are active, and the flags of a result that no
// governing predicate narrows (while, brkns).
#pragma once

#include "predicate_form.h"

// Index of the last active element at stride sizeof(T), or -1 when there is none.
template <typename T> inline int last_active(const uint8_t* pred) {
  for (int i = 48 / sizeof(T) - 1; i >= 0; --i)
    if (active<T>(pred, static_cast<unsigned>(i))) return i;
  return -1;
}

template <typename T> inline unsigned count_active(const uint8_t* pred) {
  unsigned n = 0;
  for (unsigned i = 0; i < 48 / sizeof(T); ++i) n += active<T>(pred, i);
  return n;
}

// The predicate test against an all-true mask, without reading one: N is the
// first element, Z says no element is true, C is the inverse of the last.
template <typename T> inline nzcv_flags unmasked_flags(const uint8_t* result) {
  constexpr unsigned count = 48 / sizeof(T);
  nzcv_flags f{active<T>(result, 0), true, !active<T>(result, count - 1), false};
  for (unsigned i = 0; i < count; ++i) {
    if (active<T>(result, i)) {
      f.z = false;
      break;
    }
  }
  return f;
}
