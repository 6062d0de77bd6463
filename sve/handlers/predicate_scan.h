// Scans over one predicate at an element stride: where its last active
// element is, how many are active, and the flags of a result that no
// governing predicate narrows (while, brkns).
#pragma once

#include "predicate_form.h"

// Index of the last active element at stride sizeof(T), or -1 when there is none.
template <typename T> inline int last_active(const uint8_t* pred) {
  const uint64_t m = pack_predicate(pred) & element_starts<T>();
  return m == 0 ? -1 : static_cast<int>((63 - __builtin_clzll(m)) / sizeof(T));
}

template <typename T> inline unsigned count_active(const uint8_t* pred) {
  return static_cast<unsigned>(__builtin_popcountll(pack_predicate(pred) & element_starts<T>()));
}

// The predicate test against an all-true mask, without reading one: N is the
// first element, Z says no element is true, C is the inverse of the last.
template <typename T> inline nzcv_flags unmasked_flags(const uint8_t* result) {
  constexpr unsigned count = 48 / sizeof(T);
  const uint64_t r = pack_predicate(result) & element_starts<T>();
  return {(r & 1) != 0, r == 0, !active<T>(result, count - 1), false};
}
