// Whole-register paths of the fast handlers: predicate tests that look at a
// whole register at once, and element loops done one 128-bit host vector (a
// chunk) at a time. The element-by-element loops stay for everything else.
#pragma once

#include <cstdint>
#include <cstring>

#include "element.h"

namespace ZORVO_LENGTH {

template <typename T> using lanes128 = typename simd128<T>::type;

template <typename T> inline lanes128<T> load_chunk(const uint8_t* base, unsigned chunk) {
  lanes128<T> v;
  std::memcpy(&v, base + 16 * chunk, 16);
  return v;
}

template <typename T> inline void store_chunk(uint8_t* base, unsigned chunk, lanes128<T> v) {
  std::memcpy(base + 16 * chunk, &v, 16);
}

// Whether every element of size sizeof(T) is active: bit 0 of each element's
// first predicate byte.
template <typename T> inline bool all_active(const uint8_t* pred) {
  lanes128<T> bits = load_chunk<T>(pred, 0);
  for (unsigned chunk = 1; chunk < chunks(); ++chunk) bits &= load_chunk<T>(pred, chunk);
  bits &= static_cast<T>(1);
  uint64_t half[2];
  std::memcpy(half, &bits, 16);
  constexpr uint64_t ones = sizeof(T) == 1   ? 0x0101010101010101u
                            : sizeof(T) == 2 ? 0x0001000100010001u
                            : sizeof(T) == 4 ? 0x0000000100000001u
                                             : 1u;
  return half[0] == ones && half[1] == ones;
}

// All ones in the lanes of active elements, zeros elsewhere.
template <typename T> inline lanes128<T> active_lanes(const uint8_t* pred, unsigned chunk) {
  return reinterpret_cast<lanes128<T>>((load_chunk<T>(pred, chunk) & static_cast<T>(1)) != 0);
}

// Zdn = op(Zdn, Zm) where Pg is active. Op must also take 128-bit vectors
// and raise nothing, as integer wrap-around arithmetic and bitwise ops do.
template <typename T, typename Op>
inline void merge_whole(cpu_state* s, unsigned zdn, unsigned pg, unsigned zm, Op op) {
  uint8_t* d = s->z[zdn];
  vreg out;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    const lanes128<T> old = load_chunk<T>(d, chunk), mask = active_lanes<T>(s->p[pg], chunk);
    const lanes128<T> result = op(old, load_chunk<T>(s->z[zm], chunk));
    store_chunk<T>(out.b, chunk, (result & mask) | (old & ~mask));
  }
  commit(d, out);
}

// A whole register's bytes of application memory into or out of a register,
// in ascending order, when they lie within one 4 KiB page: a fault then names
// the first byte, as it does for an element-by-element access whose first
// element faults.
inline bool within_one_page(uint64_t addr) { return (addr & 4095) <= 4096 - vector_bytes(); }

// One 128-bit access per chunk, each an asm statement of its own so that
// they stay in ascending order; memory operands let the compiler fold the
// chunk's offset into the address, and the loop unrolls where the length is
// a constant (the compiler leaves loops of asm statements alone otherwise).
inline void read_app_vector(uint8_t* dst, uint64_t addr) {
  using chunk_t = lanes128<uint8_t>;
  const unsigned bytes = vector_bytes();
#pragma GCC unroll 16
  for (unsigned at = 0; at < bytes; at += 16) {
    chunk_t v;
    asm volatile("ldr %q0, %1" : "=w"(v) : "m"(*reinterpret_cast<const chunk_t*>(addr + at)));
    std::memcpy(dst + at, &v, 16);
  }
}

inline void write_app_vector(uint64_t addr, const uint8_t* src) {
  using chunk_t = lanes128<uint8_t>;
  const unsigned bytes = vector_bytes();
#pragma GCC unroll 16
  for (unsigned at = 0; at < bytes; at += 16) {
    chunk_t v;
    std::memcpy(&v, src + at, 16);
    asm volatile("str %q1, %0" : "=m"(*reinterpret_cast<chunk_t*>(addr + at)) : "w"(v));
  }
}

} // namespace ZORVO_LENGTH
