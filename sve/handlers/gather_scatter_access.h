// Gather loads and scatter stores: every element has an address of its own,
// formed from an element of a vector register, and one host access of the
// memory element's width. T is the memory element, U the register element
// (4 or 8 bytes); a signed T sign-extends on the way into U, an unsigned T
// zero-extends, and stores keep the low sizeof(T) bytes.
#pragma once

#include <cstdint>
#include <type_traits>

#include "../memory/app_memory.h"
#include "../trace/memtrace_elements.h"
#include "element.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

// How an element of the address vector becomes a 64-bit offset.
enum class vector_offset : uint8_t {
  whole,              // the element as it is: 32-bit elements zero-extend
  zero_extended_word, // the low 32 bits, zero-extended (uxtw)
  sign_extended_word, // the low 32 bits, sign-extended (sxtw)
};

template <typename U, vector_offset Offset> inline uint64_t offset_of(U element) {
  if constexpr (Offset == vector_offset::zero_extended_word)
    return static_cast<uint32_t>(element);
  else if constexpr (Offset == vector_offset::sign_extended_word)
    return static_cast<uint64_t>(static_cast<int64_t>(static_cast<int32_t>(element)));
  else
    return element;
}

// Element i lives at base + (offset of element i of the address vector <<
// Shift), in 64-bit arithmetic that wraps. Element i's offset is read before
// element i of Zt is written, and no element reads another's offset, so Zt
// may be the address vector itself. An inactive element's address is never
// formed: its slot in the address list stays unset, as the tracer only reads
// active slots.
template <typename T, typename U, vector_offset Offset, unsigned Shift, memaccess_type_t Type>
aarch64_decode_rc element_wise_access(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                                      uint64_t base, aarch64_z_reg addresses_from) {
  static_assert(sizeof(U) == 4 || sizeof(U) == 8);
  static_assert(sizeof(T) <= sizeof(U));
  const unsigned elements = elements_of<U>();
  const uint8_t* pred = s->p[pg.num];
  uint8_t* z = s->z[zt.num];
  const uint8_t* vec = s->z[addresses_from.num];
  uint64_t addresses[kMaxVectorBytes / sizeof(U)];
  const auto access = [&](unsigned i, auto record) {
    const uint64_t addr = base + (offset_of<U, Offset>(load_elem<U>(vec, i)) << Shift);
    if constexpr (decltype(record)::value) addresses[i] = addr;
    if constexpr (Type == memaccess_load)
      store_elem<U>(z, i, static_cast<U>(read_app<T>(addr)));
    else
      write_app<T>(addr, static_cast<T>(load_elem<U>(z, i)));
  };
  // Loops mostly run with every element active and the trace gate closed:
  // one test of the whole predicate spares one per element, and the
  // unrolled accesses keep no address list. Only a marker changes the gate,
  // and no marker runs inside an instruction, so reading it here gives what
  // the tracer reads after the accesses.
  if (all_active<U>(pred) && !enable_trace) {
#pragma GCC unroll 16
    for (unsigned i = 0; i < elements; ++i) access(i, std::false_type{});
    return AARCH64_DECODE_OK;
  }
  if (all_active<U>(pred)) {
    for (unsigned i = 0; i < elements; ++i) access(i, std::true_type{});
  } else {
    for (unsigned i = 0; i < elements; ++i) {
      if (active<U>(pred, i))
        access(i, std::true_type{});
      else if constexpr (Type == memaccess_load)
        store_elem<U>(z, i, U{0});
    }
  }
  memtrace_elements(s, addresses, pred, sizeof(U), sizeof(T), Type);
  return AARCH64_DECODE_OK;
}

template <typename T> constexpr unsigned log2_size() {
  return sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : sizeof(T) == 4 ? 2 : 3;
}

// Vector plus immediate (_zpzi): element i of Zn + imm * sizeof(T).
#define VECTOR_PLUS_IMM_FORM(type, name, T, U)                                                     \
  aarch64_decode_rc name(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zn,       \
                         unsigned int imm) {                                                       \
    return element_wise_access<T, U, vector_offset::whole, 0, type>(                               \
        s, zt, pg, static_cast<uint64_t>(imm) * sizeof(T), zn);                                    \
  }

// Scalar plus unscaled vector (_zpzr, the vector named first): Xn|SP +
// offset of element i of Zm.
#define SCALAR_PLUS_VECTOR_FORM(type, name, T, U, offset)                                          \
  aarch64_decode_rc name(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_z_reg zm,       \
                         aarch64_i_rsp_reg xn) {                                                   \
    return element_wise_access<T, U, vector_offset::offset, 0, type>(s, zt, pg, read_reg(s, xn),   \
                                                                     zm);                          \
  }

// Scalar plus vector scaled by the memory element (_zprz, the scalar named
// first): Xn|SP + (offset of element i of Zm) * sizeof(T).
#define SCALAR_PLUS_SCALED_VECTOR_FORM(type, name, T, U, offset)                                   \
  aarch64_decode_rc name(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg xn,   \
                         aarch64_z_reg zm) {                                                       \
    return element_wise_access<T, U, vector_offset::offset, log2_size<T>(), type>(                 \
        s, zt, pg, read_reg(s, xn), zm);                                                           \
  }

} // namespace ZORVO_LENGTH
