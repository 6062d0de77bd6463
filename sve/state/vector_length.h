// The vector length the process runs at: one for the whole process, set once
// at start before any thread emulates (a request to change it gets this
// same length back, as from a kernel whose processor offers only this one).
#pragma once

#include "cpu_state.h"

constexpr unsigned kDefaultVectorBytes = 48;

namespace vector_length_detail {
inline unsigned bytes = kDefaultVectorBytes;
} // namespace vector_length_detail

// Vector bytes: a multiple of 16 from 16 to kMaxVectorBytes.
inline unsigned vector_bytes() { return vector_length_detail::bytes; }

inline bool valid_vector_bytes(unsigned bytes) {
  return bytes >= 16 && bytes <= kMaxVectorBytes && bytes % 16 == 0;
}

// False, and nothing changes, for a length the architecture does not allow.
inline bool set_vector_bytes(unsigned bytes) {
  if (!valid_vector_bytes(bytes)) return false;
  vector_length_detail::bytes = bytes;
  return true;
}
