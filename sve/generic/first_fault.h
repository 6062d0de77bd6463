// First-fault loads of the generic tier: the contiguous forms without a fast
// handler and every gather. The first active element is read plainly, so a
// bad address there is a real fault; each later one is read under guard, and
// the first that fails ends the load: it and every element above it become 0
// and lose their FFR bits, active or not. Nothing here is traced.
#pragma once

#include <cstdint>
#include <type_traits>

#include "arith.h"
#include "memory_read.h"

namespace generic {

// The offset or index held in element i of v, widened to 64 bits.
template <typename Lane, Offset Kind> uint64_t lane_offset(const VecV& v, unsigned i) {
  const Lane x = element<Lane>(v, i);
  if (Kind == Offset::signed32) return static_cast<uint64_t>(int64_t{static_cast<int32_t>(x)});
  if (Kind == Offset::unsigned32) return static_cast<uint32_t>(x);
  return x;
}

// T is the register element (its sign says how to extend), M the memory
// element; address_of(i) gives element i's address.
template <typename T, typename M, typename AddressOf>
void first_fault_load(VecV* out, const PredV* pg, AddressOf address_of, CpuContext* ctx) {
  using U = std::make_unsigned_t<T>;
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  bool fault = false;
  bool first = true;
  for (unsigned i = 0; i < n; ++i) {
    U value = 0;
    if (active(*pg, i, sizeof(T)) && !fault) {
      const uint64_t bits = read_memory<sizeof(M)>(address_of(i), first ? 0 : 1, &fault, ctx);
      first = false;
      if (!fault) value = static_cast<U>(static_cast<T>(static_cast<M>(bits)));
    }
    if (fault) set_group(ctx->ffr, i, sizeof(T), false);
    set_element<U>(r, i, value);
  }
  *out = r;
}

// Contiguous: base + (index + i) * msize.
template <typename T, typename M>
void load_ff_contiguous(VecV* out, const PredV* pg, uint64_t base, uint64_t index,
                        CpuContext* ctx) {
  first_fault_load<T, M>(
      out, pg, [=](unsigned i) { return base + (index + i) * sizeof(M); }, ctx);
}

// Vector of addresses plus imm5 memory elements.
template <typename T, typename M>
void load_ff_vector_imm(VecV* out, const PredV* pg, const VecV* bases, uint32_t imm,
                        CpuContext* ctx) {
  using Lane = std::make_unsigned_t<T>;
  first_fault_load<T, M>(
      out, pg,
      [=](unsigned i) { return lane_offset<Lane, Offset::whole>(*bases, i) + imm * sizeof(M); },
      ctx);
}

// Scalar base plus a vector of byte offsets.
template <typename T, typename M, Offset Kind>
void load_ff_vector_offsets(VecV* out, const PredV* pg, const VecV* offsets, uint64_t base,
                            CpuContext* ctx) {
  using Lane = std::make_unsigned_t<T>;
  first_fault_load<T, M>(
      out, pg, [=](unsigned i) { return base + lane_offset<Lane, Kind>(*offsets, i); }, ctx);
}

// Scalar base plus a vector of indices, scaled by the memory element.
template <typename T, typename M, Offset Kind>
void load_ff_scalar_indices(VecV* out, const PredV* pg, uint64_t base, const VecV* indices,
                            CpuContext* ctx) {
  using Lane = std::make_unsigned_t<T>;
  first_fault_load<T, M>(
      out, pg, [=](unsigned i) { return base + lane_offset<Lane, Kind>(*indices, i) * sizeof(M); },
      ctx);
}

// Letters of the names: VS offsets as they are (a 32-bit one zero-extended),
// XVS the sign-extended and YVS the zero-extended low 32 bits; SV, XSV and
// YSV the same as indices.
constexpr Offset kWhole = Offset::whole;
constexpr Offset kSxtw = Offset::signed32;
constexpr Offset kUxtw = Offset::unsigned32;

// clang-format off
constexpr auto VecU16CLoadFF2LSSZ = &load_ff_contiguous<uint16_t, uint16_t>;
constexpr auto VecU32CLoadFF2LSSZ = &load_ff_contiguous<uint32_t, uint16_t>;
constexpr auto VecU64CLoadFF2LSSZ = &load_ff_contiguous<uint64_t, uint16_t>;
constexpr auto VecS16CLoadFF1LSSZ = &load_ff_contiguous<int16_t, int8_t>;
constexpr auto VecS32CLoadFF1LSSZ = &load_ff_contiguous<int32_t, int8_t>;
constexpr auto VecS32CLoadFF2LSSZ = &load_ff_contiguous<int32_t, int16_t>;
constexpr auto VecS64CLoadFF1LSSZ = &load_ff_contiguous<int64_t, int8_t>;
constexpr auto VecS64CLoadFF2LSSZ = &load_ff_contiguous<int64_t, int16_t>;
constexpr auto VecS64CLoadFF4LSSZ = &load_ff_contiguous<int64_t, int32_t>;

constexpr auto VecU32LoadFF1VIZ = &load_ff_vector_imm<uint32_t, uint8_t>;
constexpr auto VecS32LoadFF1VIZ = &load_ff_vector_imm<int32_t, int8_t>;
constexpr auto VecU32LoadFF2VIZ = &load_ff_vector_imm<uint32_t, uint16_t>;
constexpr auto VecS32LoadFF2VIZ = &load_ff_vector_imm<int32_t, int16_t>;
constexpr auto VecU32LoadFF4VIZ = &load_ff_vector_imm<uint32_t, uint32_t>;
constexpr auto VecU64LoadFF1VIZ = &load_ff_vector_imm<uint64_t, uint8_t>;
constexpr auto VecS64LoadFF1VIZ = &load_ff_vector_imm<int64_t, int8_t>;
constexpr auto VecU64LoadFF2VIZ = &load_ff_vector_imm<uint64_t, uint16_t>;
constexpr auto VecS64LoadFF2VIZ = &load_ff_vector_imm<int64_t, int16_t>;
constexpr auto VecU64LoadFF4VIZ = &load_ff_vector_imm<uint64_t, uint32_t>;
constexpr auto VecS64LoadFF4VIZ = &load_ff_vector_imm<int64_t, int32_t>;
constexpr auto VecU64LoadFF8VIZ = &load_ff_vector_imm<uint64_t, uint64_t>;

constexpr auto VecU32LoadFF1VSZ = &load_ff_vector_offsets<uint32_t, uint8_t, kWhole>;
constexpr auto VecS32LoadFF1VSZ = &load_ff_vector_offsets<int32_t, int8_t, kWhole>;
constexpr auto VecU32LoadFF1XVSZ = &load_ff_vector_offsets<uint32_t, uint8_t, kSxtw>;
constexpr auto VecS32LoadFF1XVSZ = &load_ff_vector_offsets<int32_t, int8_t, kSxtw>;
constexpr auto VecU32LoadFF2VSZ = &load_ff_vector_offsets<uint32_t, uint16_t, kWhole>;
constexpr auto VecS32LoadFF2VSZ = &load_ff_vector_offsets<int32_t, int16_t, kWhole>;
constexpr auto VecU32LoadFF2XVSZ = &load_ff_vector_offsets<uint32_t, uint16_t, kSxtw>;
constexpr auto VecS32LoadFF2XVSZ = &load_ff_vector_offsets<int32_t, int16_t, kSxtw>;
constexpr auto VecU32LoadFF4VSZ = &load_ff_vector_offsets<uint32_t, uint32_t, kWhole>;
constexpr auto VecU32LoadFF4XVSZ = &load_ff_vector_offsets<uint32_t, uint32_t, kSxtw>;

constexpr auto VecU32LoadFF2SVZ = &load_ff_scalar_indices<uint32_t, uint16_t, kWhole>;
constexpr auto VecS32LoadFF2SVZ = &load_ff_scalar_indices<int32_t, int16_t, kWhole>;
constexpr auto VecU32LoadFF2XSVZ = &load_ff_scalar_indices<uint32_t, uint16_t, kSxtw>;
constexpr auto VecS32LoadFF2XSVZ = &load_ff_scalar_indices<int32_t, int16_t, kSxtw>;
constexpr auto VecU32LoadFF4SVZ = &load_ff_scalar_indices<uint32_t, uint32_t, kWhole>;
constexpr auto VecU32LoadFF4XSVZ = &load_ff_scalar_indices<uint32_t, uint32_t, kSxtw>;

constexpr auto VecU64LoadFF1VSZ = &load_ff_vector_offsets<uint64_t, uint8_t, kWhole>;
constexpr auto VecS64LoadFF1VSZ = &load_ff_vector_offsets<int64_t, int8_t, kWhole>;
constexpr auto VecU64LoadFF1XVSZ = &load_ff_vector_offsets<uint64_t, uint8_t, kSxtw>;
constexpr auto VecS64LoadFF1XVSZ = &load_ff_vector_offsets<int64_t, int8_t, kSxtw>;
constexpr auto VecU64LoadFF1YVSZ = &load_ff_vector_offsets<uint64_t, uint8_t, kUxtw>;
constexpr auto VecS64LoadFF1YVSZ = &load_ff_vector_offsets<int64_t, int8_t, kUxtw>;
constexpr auto VecU64LoadFF2VSZ = &load_ff_vector_offsets<uint64_t, uint16_t, kWhole>;
constexpr auto VecS64LoadFF2VSZ = &load_ff_vector_offsets<int64_t, int16_t, kWhole>;
constexpr auto VecU64LoadFF2XVSZ = &load_ff_vector_offsets<uint64_t, uint16_t, kSxtw>;
constexpr auto VecS64LoadFF2XVSZ = &load_ff_vector_offsets<int64_t, int16_t, kSxtw>;
constexpr auto VecU64LoadFF2YVSZ = &load_ff_vector_offsets<uint64_t, uint16_t, kUxtw>;
constexpr auto VecS64LoadFF2YVSZ = &load_ff_vector_offsets<int64_t, int16_t, kUxtw>;
constexpr auto VecU64LoadFF4VSZ = &load_ff_vector_offsets<uint64_t, uint32_t, kWhole>;
constexpr auto VecS64LoadFF4VSZ = &load_ff_vector_offsets<int64_t, int32_t, kWhole>;
constexpr auto VecU64LoadFF4XVSZ = &load_ff_vector_offsets<uint64_t, uint32_t, kSxtw>;
constexpr auto VecS64LoadFF4XVSZ = &load_ff_vector_offsets<int64_t, int32_t, kSxtw>;
constexpr auto VecU64LoadFF4YVSZ = &load_ff_vector_offsets<uint64_t, uint32_t, kUxtw>;
constexpr auto VecS64LoadFF4YVSZ = &load_ff_vector_offsets<int64_t, int32_t, kUxtw>;
constexpr auto VecU64LoadFF8VSZ = &load_ff_vector_offsets<uint64_t, uint64_t, kWhole>;
constexpr auto VecU64LoadFF8XVSZ = &load_ff_vector_offsets<uint64_t, uint64_t, kSxtw>;
constexpr auto VecU64LoadFF8YVSZ = &load_ff_vector_offsets<uint64_t, uint64_t, kUxtw>;

constexpr auto VecU64LoadFF2SVZ = &load_ff_scalar_indices<uint64_t, uint16_t, kWhole>;
constexpr auto VecS64LoadFF2SVZ = &load_ff_scalar_indices<int64_t, int16_t, kWhole>;
constexpr auto VecU64LoadFF2XSVZ = &load_ff_scalar_indices<uint64_t, uint16_t, kSxtw>;
constexpr auto VecS64LoadFF2XSVZ = &load_ff_scalar_indices<int64_t, int16_t, kSxtw>;
constexpr auto VecU64LoadFF2YSVZ = &load_ff_scalar_indices<uint64_t, uint16_t, kUxtw>;
constexpr auto VecS64LoadFF2YSVZ = &load_ff_scalar_indices<int64_t, int16_t, kUxtw>;
constexpr auto VecU64LoadFF4SVZ = &load_ff_scalar_indices<uint64_t, uint32_t, kWhole>;
constexpr auto VecS64LoadFF4SVZ = &load_ff_scalar_indices<int64_t, int32_t, kWhole>;
constexpr auto VecU64LoadFF4XSVZ = &load_ff_scalar_indices<uint64_t, uint32_t, kSxtw>;
constexpr auto VecS64LoadFF4XSVZ = &load_ff_scalar_indices<int64_t, int32_t, kSxtw>;
constexpr auto VecU64LoadFF4YSVZ = &load_ff_scalar_indices<uint64_t, uint32_t, kUxtw>;
constexpr auto VecS64LoadFF4YSVZ = &load_ff_scalar_indices<int64_t, int32_t, kUxtw>;
constexpr auto VecU64LoadFF8SVZ = &load_ff_scalar_indices<uint64_t, uint64_t, kWhole>;
constexpr auto VecU64LoadFF8XSVZ = &load_ff_scalar_indices<uint64_t, uint64_t, kSxtw>;
constexpr auto VecU64LoadFF8YSVZ = &load_ff_scalar_indices<uint64_t, uint64_t, kUxtw>;
// clang-format on

} // namespace generic
