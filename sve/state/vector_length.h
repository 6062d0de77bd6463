// The vector length the process runs at: one for the whole process, set once
// at start before any thread emulates (a request to change it gets this
// same length back, as from a kernel whose processor offers only this one).
//
// The fast handlers and the thin decoders are compiled once for each length
// that processors have (16, 32, 48 and 64 bytes), where vector_bytes() is a
// constant and their loops unroll, and once for any length, where it is read
// at run time. Each compilation lives in its own namespace, ZORVO_LENGTH;
// code outside them (the generic tier, the client, tests) sees the one for
// any length.
#pragma once

#include "cpu_state.h"

constexpr unsigned kDefaultVectorBytes = 48;

namespace vector_length_detail {
inline unsigned bytes = kDefaultVectorBytes;
} // namespace vector_length_detail

// The process's length in bytes: a multiple of 16 from 16 to kMaxVectorBytes.
inline unsigned process_vector_bytes() { return vector_length_detail::bytes; }

inline bool valid_vector_bytes(unsigned bytes) {
  return bytes >= 16 && bytes <= kMaxVectorBytes && bytes % 16 == 0;
}

// False, and nothing changes, for a length the architecture does not allow.
inline bool set_vector_bytes(unsigned bytes) {
  if (!valid_vector_bytes(bytes)) return false;
  vector_length_detail::bytes = bytes;
  return true;
}

// The length of the process for as long as it lives, the one before after:
// for the tools and tests that try several lengths in one process.
struct vector_length_scope {
  unsigned before = process_vector_bytes();
  ~vector_length_scope() { set_vector_bytes(before); }
};

// The lengths with a compilation of their own.
#define ZORVO_FIXED_LENGTHS(X) X(16) X(32) X(48) X(64)

#define ZORVO_JOIN_(a, b) a##b
#define ZORVO_JOIN(a, b) ZORVO_JOIN_(a, b)
#ifdef ZORVO_FIXED_VECTOR_BYTES
#define ZORVO_LENGTH ZORVO_JOIN(fixed_, ZORVO_FIXED_VECTOR_BYTES)
#else
#define ZORVO_LENGTH any_length
#endif

namespace ZORVO_LENGTH {
#ifdef ZORVO_FIXED_VECTOR_BYTES
// Only ever called once the process runs at this length.
constexpr unsigned vector_bytes() { return ZORVO_FIXED_VECTOR_BYTES; }
#else
inline unsigned vector_bytes() { return process_vector_bytes(); }
#endif
} // namespace ZORVO_LENGTH

using namespace ZORVO_LENGTH;
