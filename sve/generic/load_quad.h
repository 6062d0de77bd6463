// The replicating quadword and octaword loads of the generic tier: the
// active elements of the first 128 (256) bits are read, plainly (a bad
// address is a real fault), and the block fills every 128-bit (256-bit)
// segment of the result; bytes past the last whole segment are zero. The
// predicate beyond the first block is not looked at. Nothing here is traced.
#pragma once

#include <cstdint>
#include <cstring>

#include "memory_read.h"

namespace generic {

template <typename T, unsigned Block = 16>
void load_quad_replicated(VecV* out, const PredV* pg, uint64_t address, CpuContext* ctx) {
  uint8_t quad[Block];
  for (unsigned i = 0; i < Block / sizeof(T); ++i) {
    const T value =
        active(*pg, i, sizeof(T))
            ? static_cast<T>(read_memory<sizeof(T)>(address + i * sizeof(T), 0, nullptr, ctx))
            : T{0};
    std::memcpy(quad + i * sizeof(T), &value, sizeof(T));
  }
  VecV r;
  const unsigned filled = predicate_bits(ctx) / Block * Block;
  for (unsigned i = 0; i < predicate_bits(ctx); ++i) r.b[i] = i < filled ? quad[i % Block] : 0;
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

// ld1ro: scalar base plus imm4 octawords, or a scalar index of elements.
template <typename T>
void load_octa_scalar_imm(VecV* out, const PredV* pg, uint64_t base, int imm, CpuContext* ctx) {
  load_quad_replicated<T, 32>(out, pg, base + static_cast<uint64_t>(int64_t{imm} * 32), ctx);
}
template <typename T>
void load_octa_scalar_index(VecV* out, const PredV* pg, uint64_t base, uint64_t index,
                            CpuContext* ctx) {
  load_quad_replicated<T, 32>(out, pg, base + index * sizeof(T), ctx);
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
constexpr auto VecU8LoadDup1OSIZ = &load_octa_scalar_imm<uint8_t>;
constexpr auto VecU16LoadDup2OSIZ = &load_octa_scalar_imm<uint16_t>;
constexpr auto VecU32LoadDup4OSIZ = &load_octa_scalar_imm<uint32_t>;
constexpr auto VecU64LoadDup8OSIZ = &load_octa_scalar_imm<uint64_t>;
constexpr auto VecU8LoadDup1OSSZ = &load_octa_scalar_index<uint8_t>;
constexpr auto VecU16LoadDup2OSSZ = &load_octa_scalar_index<uint16_t>;
constexpr auto VecU32LoadDup4OSSZ = &load_octa_scalar_index<uint32_t>;
constexpr auto VecU64LoadDup8OSSZ = &load_octa_scalar_index<uint64_t>;
// clang-format on

} // namespace generic
