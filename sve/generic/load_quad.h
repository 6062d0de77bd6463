// The replicating quadword load of the generic tier: the active elements of
// the first 128 bits are read, plainly (a bad address is a real fault), and
// the 16 bytes fill every 128-bit segment of the result. The predicate
// beyond the first 128 bits is not looked at. Nothing here is traced.
#pragma once

#include <cstdint>
#include <cstring>

#include "memory_read.h"

namespace generic {

template <typename T>
void load_quad_replicated(VecV* out, const PredV* pg, uint64_t address, CpuContext* ctx) {
  uint8_t quad[16];
  for (unsigned i = 0; i < 16 / sizeof(T); ++i) {
    const T value =
        active(*pg, i, sizeof(T))
            ? static_cast<T>(read_memory<sizeof(T)>(address + i * sizeof(T), 0, nullptr, ctx))
            : T{0};
    std::memcpy(quad + i * sizeof(T), &value, sizeof(T));
  }
  VecV r;
  for (unsigned segment = 0; segment < ctx->vl / 2; ++segment)
    std::memcpy(r.b + 16 * segment, quad, sizeof quad);
  *out = r;
}

// Scalar base plus imm4 quadwords, whatever the element size.
template <typename T>
void load_quad_scalar_imm(VecV* out, const PredV* pg, uint64_t base, int imm, CpuContext* ctx) {
  load_quad_replicated<T>(out, pg, base + static_cast<uint64_t>(int64_t{imm} * 16), ctx);
}

// Scalar base plus a scalar index of elements.
template <typename T>
void load_quad_scalar_index(VecV* out, const PredV* pg, uint64_t base, uint64_t index,
                            CpuContext* ctx) {
  load_quad_replicated<T>(out, pg, base + index * sizeof(T), ctx);
}

// clang-format off
constexpr auto VecU8LoadDup1QSIZ = &load_quad_scalar_imm<uint8_t>;
constexpr auto VecU16LoadDup2QSIZ = &load_quad_scalar_imm<uint16_t>;
constexpr auto VecU32LoadDup4QSIZ = &load_quad_scalar_imm<uint32_t>;
constexpr auto VecU64LoadDup8QSIZ = &load_quad_scalar_imm<uint64_t>;
constexpr auto VecU8LoadDup1QSSZ = &load_quad_scalar_index<uint8_t>;
constexpr auto VecU16LoadDup2QSSZ = &load_quad_scalar_index<uint16_t>;
constexpr auto VecU32LoadDup4QSSZ = &load_quad_scalar_index<uint32_t>;
constexpr auto VecU64LoadDup8QSSZ = &load_quad_scalar_index<uint64_t>;
// clang-format on

} // namespace generic
