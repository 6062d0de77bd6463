// Building blocks shared by the fast handlers: element access on the
// registers, the predicate test, and dispatch on the element size.
#pragma once

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "../state/cpu_state.h"
#include "../state/vector_length.h"

namespace ZORVO_LENGTH {

template <typename T> inline T load_elem(const uint8_t* base, unsigned i) {
  T v;
  std::memcpy(&v, base + i * sizeof(T), sizeof(T));
  return v;
}

template <typename T> inline void store_elem(uint8_t* base, unsigned i, T v) {
  std::memcpy(base + i * sizeof(T), &v, sizeof(T));
}

// Element i is active when bit 0 of the predicate byte at its first vector
// byte is set; the element's other predicate bytes are never looked at.
template <typename T> inline bool active(const uint8_t* pred, unsigned i) {
  return pred[i * sizeof(T)] & 1;
}

// A register result is built in a local buffer and copied last, so that a
// destination may also be any of the sources.
struct vreg {
  alignas(16) uint8_t b[kMaxVectorBytes];
};

inline void commit(uint8_t* dst, const vreg& v) { std::memcpy(dst, v.b, vector_bytes()); }

// Elements of sizeof(T) bytes in a vector.
template <typename T> inline unsigned elements_of() { return vector_bytes() / sizeof(T); }

template <unsigned Bytes> struct uint_of;
template <> struct uint_of<1> { using type = uint8_t; };
template <> struct uint_of<2> { using type = uint16_t; };
template <> struct uint_of<4> { using type = uint32_t; };
template <> struct uint_of<8> { using type = uint64_t; };

// Calls fn with a value of the unsigned element type for the size: paths for
// h, s and d, and the byte path for anything else.
template <typename Fn> inline void by_element_size(uint32_t size, Fn&& fn) {
  switch (size) {
  case ELEM_S:
    fn(uint32_t{});
    break;
  case ELEM_D:
    fn(uint64_t{});
    break;
  case ELEM_H:
    fn(uint16_t{});
    break;
  default:
    fn(uint8_t{});
    break;
  }
}

// Calls fn with uint64_t for size d and uint32_t for anything else: the two
// paths of the families that exist only at s and d.
template <typename Fn> inline void by_word_size(uint32_t size, Fn&& fn) {
  if (size == ELEM_D)
    fn(uint64_t{});
  else
    fn(uint32_t{});
}

// Products modulo the element width. Byte and halfword operands would
// otherwise be promoted to int, whose overflow is undefined.
template <typename T> inline T mul_wrap(T a, T b) {
  using wide = std::conditional_t<(sizeof(T) < sizeof(unsigned)), unsigned, T>;
  return static_cast<T>(static_cast<wide>(a) * static_cast<wide>(b));
}

// A vector is a whole number of 128-bit host vectors: its chunks.
inline unsigned chunks() { return vector_bytes() / 16; }
template <typename T> struct simd128 { typedef T type __attribute__((vector_size(16))); };

template <typename T, typename Op>
inline void unpredicated_simd(uint8_t* dst, const uint8_t* a, const uint8_t* b, Op op) {
  using V = typename simd128<T>::type;
  vreg out;
  for (unsigned at = 0; at < vector_bytes(); at += 16) {
    V x, y;
    std::memcpy(&x, a + at, 16);
    std::memcpy(&y, b + at, 16);
    const V r = op(x, y);
    std::memcpy(out.b + at, &r, 16);
  }
  commit(dst, out);
}

} // namespace ZORVO_LENGTH
