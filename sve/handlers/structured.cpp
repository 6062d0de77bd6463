// Structured loads and stores LD2-LD4 and ST2-ST4: N consecutive memory
// elements form a structure, and component k of structure i is element i of
// register Zt + k. The register list wraps after Z31.
#include <cstdint>

#include "../memory/app_memory.h"
#include "../state/cpu_state.h"
#include "../trace/memtrace_elements.h"
#include "element.h"

namespace ZORVO_LENGTH {

namespace {

inline uint8_t* list_register(cpu_state* s, aarch64_z_reg zt, unsigned k) {
  return s->z[(zt.num + k) % 32];
}

} // namespace

// Structures are visited in ascending address order, the N registers in
// step; `offset` counts elements. A load zeroes an inactive structure in
// every register and a store leaves its memory alone, but its place in memory
// is passed over all the same. The records follow once all elements are done.
template <typename T, typename U, unsigned N, memaccess_type_t Type>
aarch64_decode_rc structured_access(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                                    aarch64_i_rsp_reg xn, long offset) {
  static_assert(sizeof(T) == sizeof(U));
  const unsigned structures = elements_of<U>();
  const uint8_t* pred = s->p[pg.num];
  uint64_t addrs[N * kMaxVectorBytes / sizeof(U)];
  uint64_t p = read_reg(s, xn) + static_cast<uint64_t>(offset) * sizeof(T);
  for (unsigned i = 0; i < structures; ++i) {
    const bool on = active<U>(pred, i);
    for (unsigned k = 0; k < N; ++k, p += sizeof(T)) {
      uint8_t* reg = list_register(s, zt, k);
      if constexpr (Type == memaccess_load)
        store_elem<U>(reg, i, on ? static_cast<U>(read_app<T>(p)) : U{0});
      else if (on)
        write_app<T>(p, static_cast<T>(load_elem<U>(reg, i)));
      addrs[i * N + k] = p;
    }
  }
  memtrace_elements(s, addrs, pred, sizeof(U), sizeof(T), Type, N);
  return AARCH64_DECODE_OK;
}

template <typename T, typename U, unsigned N>
aarch64_decode_rc sve_ldN_zpri(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                               aarch64_i_rsp_reg xn, long offset) {
  return structured_access<T, U, N, memaccess_load>(s, zt, pg, xn, offset);
}

template <typename T, typename U, unsigned N>
aarch64_decode_rc sve_stN_zpri(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                               aarch64_i_rsp_reg xn, long offset) {
  return structured_access<T, U, N, memaccess_store>(s, zt, pg, xn, offset);
}

// The two address forms of one structured access. The immediate counts whole
// lists of N vectors (N vector lengths of bytes); the index register counts elements, and
// XZR adds nothing.
#define STRUCTURED_ADDRESS_FORMS(routine, imm_form, index_form, T, N)                              \
  aarch64_decode_rc imm_form(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,                     \
                             aarch64_i_rsp_reg xn, int imm) {                                      \
    const int32_t elements = imm * static_cast<int32_t>(N * (elements_of<T>()));                   \
    return routine<T, T, N>(s, zt, pg, xn, elements);                                              \
  }                                                                                                \
  aarch64_decode_rc index_form(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,                   \
                               aarch64_i_rsp_reg xn, aarch64_i_reg xm) {                           \
    return routine<T, T, N>(s, zt, pg, xn, static_cast<long>(read_reg(s, xm)));                    \
  }

// The load and the store of one element type and structure size.
#define STRUCTURED_FORMS(T, N, ld_imm, ld_index, st_imm, st_index)                                 \
  STRUCTURED_ADDRESS_FORMS(sve_ldN_zpri, ld_imm, ld_index, T, N)                                   \
  STRUCTURED_ADDRESS_FORMS(sve_stN_zpri, st_imm, st_index, T, N)

STRUCTURED_FORMS(signed char, 2, sve_ld2b_zpri, sve_ld2b_scaled_zprr, sve_st2b_zpri,
                 sve_st2b_scaled_zprr)
STRUCTURED_FORMS(signed char, 3, sve_ld3b_zpri, sve_ld3b_scaled_zprr, sve_st3b_zpri,
                 sve_st3b_scaled_zprr)
STRUCTURED_FORMS(signed char, 4, sve_ld4b_zpri, sve_ld4b_scaled_zprr, sve_st4b_zpri,
                 sve_st4b_scaled_zprr)
STRUCTURED_FORMS(short, 2, sve_ld2h_zpri, sve_ld2h_scaled_zprr, sve_st2h_zpri, sve_st2h_scaled_zprr)
STRUCTURED_FORMS(short, 3, sve_ld3h_zpri, sve_ld3h_scaled_zprr, sve_st3h_zpri, sve_st3h_scaled_zprr)
STRUCTURED_FORMS(short, 4, sve_ld4h_zpri, sve_ld4h_scaled_zprr, sve_st4h_zpri, sve_st4h_scaled_zprr)
STRUCTURED_FORMS(int, 2, sve_ld2w_zpri, sve_ld2w_scaled_zprr, sve_st2w_zpri, sve_st2w_scaled_zprr)
STRUCTURED_FORMS(int, 3, sve_ld3w_zpri, sve_ld3w_scaled_zprr, sve_st3w_zpri, sve_st3w_scaled_zprr)
STRUCTURED_FORMS(int, 4, sve_ld4w_zpri, sve_ld4w_scaled_zprr, sve_st4w_zpri, sve_st4w_scaled_zprr)
STRUCTURED_FORMS(long, 2, sve_ld2d_zpri, sve_ld2d_scaled_zprr, sve_st2d_zpri, sve_st2d_scaled_zprr)
STRUCTURED_FORMS(long, 3, sve_ld3d_zpri, sve_ld3d_scaled_zprr, sve_st3d_zpri, sve_st3d_scaled_zprr)
STRUCTURED_FORMS(long, 4, sve_ld4d_zpri, sve_ld4d_scaled_zprr, sve_st4d_zpri, sve_st4d_scaled_zprr)

} // namespace ZORVO_LENGTH
