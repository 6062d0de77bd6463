// The SVE2 non-temporal gathers and scatters: each active element's address
// is its element of a vector of bases (32-bit ones zero-extended) plus one
// scalar offset. Accesses are plain (a bad address is a real fault), go
// element by element from the lowest, and are not traced.
#pragma once

#include <cstdint>

#include "../memory/app_memory.h"
#include "elementwise.h"
#include "memory_read.h"

namespace generic {

// ldnt1b, ldnt1sh...: Bytes of memory, extended to T by T's kind; inactive
// elements are zero.
template <typename T, unsigned Bytes>
void load_vector_plus_scalar(VecV* out, const PredV* pg, const VecV* bases, uint64_t offset,
                             CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    uint64_t x = 0;
    if (active(*pg, i, sizeof(T)))
      x = bits(Int(read_memory<Bytes>(raw<T>(*bases, i) + offset, 0, nullptr, ctx), Bytes * 8,
                   unsigned_kind<T>));
    set_raw<T>(r, i, x);
  }
  *out = r;
}

template <unsigned Bytes> struct memory_word;
template <> struct memory_word<1> { using type = uint8_t; };
template <> struct memory_word<2> { using type = uint16_t; };
template <> struct memory_word<4> { using type = uint32_t; };
template <> struct memory_word<8> { using type = uint64_t; };

// stnt1b, stnt1w...: the low Bytes of each active element of data.
template <typename T, unsigned Bytes>
void store_vector_plus_scalar(const VecV* data, const PredV* pg, const VecV* bases, uint64_t offset,
                              CpuContext* ctx) {
  using M = typename memory_word<Bytes>::type;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    if (active(*pg, i, sizeof(T)))
      write_app<M>(raw<T>(*bases, i) + offset, static_cast<M>(raw<T>(*data, i)));
}

// clang-format off
constexpr auto VecU32LoadNT1VXZ = &load_vector_plus_scalar<uint32_t, 1>;
constexpr auto VecS32LoadNT1VXZ = &load_vector_plus_scalar<int32_t, 1>;
constexpr auto VecU32LoadNT2VXZ = &load_vector_plus_scalar<uint32_t, 2>;
constexpr auto VecS32LoadNT2VXZ = &load_vector_plus_scalar<int32_t, 2>;
constexpr auto VecU32LoadNT4VXZ = &load_vector_plus_scalar<uint32_t, 4>;
constexpr auto VecU64LoadNT1VXZ = &load_vector_plus_scalar<uint64_t, 1>;
constexpr auto VecS64LoadNT1VXZ = &load_vector_plus_scalar<int64_t, 1>;
constexpr auto VecU64LoadNT2VXZ = &load_vector_plus_scalar<uint64_t, 2>;
constexpr auto VecS64LoadNT2VXZ = &load_vector_plus_scalar<int64_t, 2>;
constexpr auto VecU64LoadNT4VXZ = &load_vector_plus_scalar<uint64_t, 4>;
constexpr auto VecS64LoadNT4VXZ = &load_vector_plus_scalar<int64_t, 4>;
constexpr auto VecU64LoadNT8VXZ = &load_vector_plus_scalar<uint64_t, 8>;
constexpr auto VecU32StoreNT1VX = &store_vector_plus_scalar<uint32_t, 1>;
constexpr auto VecU32StoreNT2VX = &store_vector_plus_scalar<uint32_t, 2>;
constexpr auto VecU32StoreNT4VX = &store_vector_plus_scalar<uint32_t, 4>;
constexpr auto VecU64StoreNT1VX = &store_vector_plus_scalar<uint64_t, 1>;
constexpr auto VecU64StoreNT2VX = &store_vector_plus_scalar<uint64_t, 2>;
constexpr auto VecU64StoreNT4VX = &store_vector_plus_scalar<uint64_t, 4>;
constexpr auto VecU64StoreNT8VX = &store_vector_plus_scalar<uint64_t, 8>;
// clang-format on

} // namespace generic
