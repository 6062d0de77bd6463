// Contiguous accesses of one vector's worth of elements: element i lies at
// address + i * sizeof(T) in memory and at i * sizeof(U) in the register, so
// T is the memory element and U the register element (sizeof(T) <= sizeof(U)).
// A signed T sign-extends on the way into a wider U; an unsigned T
// zero-extends. Stores keep the low sizeof(T) bytes.
#pragma once

#include <cstdint>

#include "../memory/app_memory.h"
#include "../trace/memtrace_lin.h"
#include "element.h"
#include "predicate_form.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

// Xn|SP + imm * (bytes one vector's elements occupy in memory): for the
// widening forms that is less than the vector length.
template <typename T, typename U>
inline uint64_t vector_offset_address(const cpu_state* s, aarch64_i_rsp_reg xn, int imm) {
  const int64_t footprint = elements_of<U>() * sizeof(T);
  return read_reg(s, xn) + static_cast<uint64_t>(imm * footprint);
}

// Xn|SP + Xm * sizeof(T); an index of XZR adds nothing.
template <typename T>
inline uint64_t scaled_index_address(const cpu_state* s, aarch64_i_rsp_reg xn, aarch64_i_reg xm) {
  return read_reg(s, xn) + read_reg(s, xm) * sizeof(T);
}

// Inactive elements become 0 and touch no memory. Elements from `count` up
// are left as they are.
template <typename T, typename U>
inline void load_active_elements(uint8_t* z, const uint8_t* pred, uint64_t addr,
                                 unsigned count = elements_of<U>()) {
  for (unsigned i = 0; i < count; ++i) {
    const U v = active<U>(pred, i) ? static_cast<U>(read_app<T>(addr + i * sizeof(T))) : U{0};
    store_elem<U>(z, i, v);
  }
}

// Only the active elements are visited, in ascending order: a partial store
// costs its active elements, not the whole vector's.
template <typename T, typename U>
inline void store_active_elements(const uint8_t* z, const uint8_t* pred, uint64_t addr) {
  const pred_bits starts = pack_predicate(pred) & element_starts<U>();
  for (unsigned k = 0; k < used_words(); ++k)
    for (uint64_t left = starts.w[k]; left; left &= left - 1) {
      const unsigned i = (64 * k + static_cast<unsigned>(__builtin_ctzll(left))) / sizeof(U);
      write_app<T>(addr + i * sizeof(T), static_cast<T>(load_elem<U>(z, i)));
    }
}

// A whole contiguous access: the elements first, then the trace records, so
// that a record only ever tells of an access that completed.
template <typename T, typename U, memaccess_type_t Type>
aarch64_decode_rc contiguous_access(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                                    uint64_t addr) {
  uint8_t* pred = s->p[pg.num];
  if (sizeof(T) == sizeof(U) && within_one_page(addr) && all_active<U>(pred)) {
    if constexpr (Type == memaccess_load)
      read_app_vector(s->z[zt.num], addr);
    else
      write_app_vector(addr, s->z[zt.num]);
  } else if constexpr (Type == memaccess_load) {
    load_active_elements<T, U>(s->z[zt.num], pred, addr);
  } else {
    store_active_elements<T, U>(s->z[zt.num], pred, addr);
  }
  memtrace_lin<T, U>(s, reinterpret_cast<T*>(addr), reinterpret_cast<char*>(pred), Type);
  return AARCH64_DECODE_OK;
}

// The two address forms of one contiguous load or store: vector-multiple
// immediate and scaled index register.
#define CONTIGUOUS_FORMS(type, imm_form, index_form, T, U)                                         \
  aarch64_decode_rc imm_form(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,                     \
                             aarch64_i_rsp_reg xn, int imm) {                                      \
    return contiguous_access<T, U, type>(s, zt, pg, vector_offset_address<T, U>(s, xn, imm));      \
  }                                                                                                \
  aarch64_decode_rc index_form(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,                   \
                               aarch64_i_rsp_reg xn, aarch64_i_reg xm) {                           \
    return contiguous_access<T, U, type>(s, zt, pg, scaled_index_address<T>(s, xn, xm));           \
  }

} // namespace ZORVO_LENGTH
