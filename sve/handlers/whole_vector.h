// Whole-register paths of the fast handlers: predicate tests that look at all
// 48 bytes at once, and element loops done as three 128-bit host vector
// operations. The element-by-element loops stay for everything else.
#pragma once

#include <cstdint>
#include <cstring>

#include "element.h"

template <typename T> using lanes128 = typename simd128<T>::type;

template <typename T> inline lanes128<T> load_third(const uint8_t* base, unsigned third) {
  lanes128<T> v;
  std::memcpy(&v, base + 16 * third, 16);
  return v;
}

template <typename T> inline void store_third(uint8_t* base, unsigned third, lanes128<T> v) {
  std::memcpy(base + 16 * third, &v, 16);
}

// Whether every element of size sizeof(T) is active: bit 0 of each element's
// first predicate byte.
template <typename T> inline bool all_active(const uint8_t* pred) {
  const lanes128<T> bits =
      load_third<T>(pred, 0) & load_third<T>(pred, 1) & load_third<T>(pred, 2) & static_cast<T>(1);
  uint64_t half[2];
  std::memcpy(half, &bits, 16);
  constexpr uint64_t ones = sizeof(T) == 1   ? 0x0101010101010101u
                            : sizeof(T) == 2 ? 0x0001000100010001u
                            : sizeof(T) == 4 ? 0x0000000100000001u
                                             : 1u;
  return half[0] == ones && half[1] == ones;
}

// All ones in the lanes of active elements, zeros elsewhere.
template <typename T> inline lanes128<T> active_lanes(const uint8_t* pred, unsigned third) {
  return reinterpret_cast<lanes128<T>>((load_third<T>(pred, third) & static_cast<T>(1)) != 0);
}

// Zdn = op(Zdn, Zm) where Pg is active. Op must also take 128-bit vectors
// and raise nothing, as integer wrap-around arithmetic and bitwise ops do.
template <typename T, typename Op>
inline void merge_whole(cpu_state* s, unsigned zdn, unsigned pg, unsigned zm, Op op) {
  uint8_t* d = s->z[zdn];
  vec48 out;
  for (unsigned third = 0; third < 3; ++third) {
    const lanes128<T> old = load_third<T>(d, third), mask = active_lanes<T>(s->p[pg], third);
    const lanes128<T> result = op(old, load_third<T>(s->z[zm], third));
    store_third<T>(out.b, third, (result & mask) | (old & ~mask));
  }
  commit(d, out);
}

// 48 bytes of application memory into or out of a register, in ascending
// order, when they lie within one 4 KiB page: a fault then names the first
// byte, as it does for an element-by-element access whose first element
// faults.
inline bool within_one_page(uint64_t addr) { return (addr & 4095) <= 4096 - 48; }

inline void read_app_48(uint8_t* dst, uint64_t addr) {
  lanes128<uint8_t> a, b, c;
  asm volatile("ldr %q0, [%3]\n\tldr %q1, [%3, #16]\n\tldr %q2, [%3, #32]"
               : "=&w"(a), "=&w"(b), "=w"(c)
               : "r"(addr)
               : "memory");
  store_third<uint8_t>(dst, 0, a);
  store_third<uint8_t>(dst, 1, b);
  store_third<uint8_t>(dst, 2, c);
}

inline void write_app_48(uint64_t addr, const uint8_t* src) {
  const lanes128<uint8_t> a = load_third<uint8_t>(src, 0), b = load_third<uint8_t>(src, 1),
                          c = load_third<uint8_t>(src, 2);
  asm volatile("str %q0, [%3]\n\tstr %q1, [%3, #16]\n\tstr %q2, [%3, #32]"
               :
               : "w"(a), "w"(b), "w"(c), "r"(addr)
               : "memory");
}
