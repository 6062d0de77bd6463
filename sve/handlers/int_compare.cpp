// Integer compares into a predicate, against a vector or an immediate. The
// result is zeroing (inactive elements false), written at the element size,
// and always sets NZCV from the governing predicate and the new result.
#include <type_traits>

#include "../state/cpu_state.h"
#include "predicate_form.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

namespace {

struct eq_op {
  template <typename T> auto operator()(T a, T b) const { return a == b; }
};
struct ne_op {
  template <typename T> auto operator()(T a, T b) const { return a != b; }
};
struct gt_op {
  template <typename T> auto operator()(T a, T b) const { return a > b; }
};
struct ge_op {
  template <typename T> auto operator()(T a, T b) const { return a >= b; }
};
struct lt_op {
  template <typename T> auto operator()(T a, T b) const { return a < b; }
};
struct le_op {
  template <typename T> auto operator()(T a, T b) const { return a <= b; }
};

constexpr bool kSigned = true;
constexpr bool kUnsigned = false;

// T is the element type read from Zn, signed or unsigned as the condition
// wants; right(chunk) gives the right-hand operands of a chunk of the vector.
template <typename T, typename Right, typename Cond>
void compare(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn, Right right,
             Cond cond) {
  // Three 128-bit compares: each lane of the condition's mask is all ones
  // or zero, and the active element's lowest byte keeps bit 0 of it.
  const uint8_t* n = s->z[zn.num];
  const uint8_t* mask = s->p[pg.num];
  vreg result;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    const auto holds = cond(load_chunk<T>(n, chunk), right(chunk));
    store_chunk<T>(result.b, chunk,
                   reinterpret_cast<lanes128<T>>(holds) & load_chunk<T>(mask, chunk) &
                       static_cast<T>(1));
  }
  commit_with_flags<T>(s, s->p[pd.num], mask, result);
}

template <bool Signed, typename U>
using element_type = std::conditional_t<Signed, std::make_signed_t<U>, U>;

template <bool Signed, typename Cond>
aarch64_decode_rc compare_vectors(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                  aarch64_z_reg zn, aarch64_z_reg zm, Cond cond) {
  by_element_size(pd.elem, [&](auto u) {
    using T = element_type<Signed, decltype(u)>;
    const uint8_t* m = s->z[zm.num];
    compare<T>(
        s, pd, pg, zn, [m](unsigned chunk) { return load_chunk<T>(m, chunk); }, cond);
  });
  return AARCH64_DECODE_OK;
}

// The decoders pass a signed 5-bit or an unsigned 7-bit value, which every
// element type holds as it is.
template <bool Signed, typename Imm, typename Cond>
aarch64_decode_rc compare_immediate(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                    aarch64_z_reg zn, Imm imm, Cond cond) {
  by_element_size(pd.elem, [&](auto u) {
    using T = element_type<Signed, decltype(u)>;
    const lanes128<T> value = lanes128<T>{} + static_cast<T>(imm);
    compare<T>(
        s, pd, pg, zn, [value](unsigned) { return value; }, cond);
  });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_cmpeq_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return compare_vectors<kSigned>(s, pd, pg, zn, zm, eq_op{});
}
aarch64_decode_rc sve_cmpne_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return compare_vectors<kSigned>(s, pd, pg, zn, zm, ne_op{});
}
aarch64_decode_rc sve_cmpge_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return compare_vectors<kSigned>(s, pd, pg, zn, zm, ge_op{});
}
aarch64_decode_rc sve_cmpgt_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return compare_vectors<kSigned>(s, pd, pg, zn, zm, gt_op{});
}
aarch64_decode_rc sve_cmphs_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return compare_vectors<kUnsigned>(s, pd, pg, zn, zm, ge_op{});
}
aarch64_decode_rc sve_cmphi_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return compare_vectors<kUnsigned>(s, pd, pg, zn, zm, gt_op{});
}

aarch64_decode_rc sve_cmpeq_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm) {
  return compare_immediate<kSigned>(s, pd, pg, zn, imm, eq_op{});
}
aarch64_decode_rc sve_cmpne_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm) {
  return compare_immediate<kSigned>(s, pd, pg, zn, imm, ne_op{});
}
aarch64_decode_rc sve_cmpgt_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm) {
  return compare_immediate<kSigned>(s, pd, pg, zn, imm, gt_op{});
}
aarch64_decode_rc sve_cmplt_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm) {
  return compare_immediate<kSigned>(s, pd, pg, zn, imm, lt_op{});
}
aarch64_decode_rc sve_cmple_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 int imm) {
  return compare_immediate<kSigned>(s, pd, pg, zn, imm, le_op{});
}
aarch64_decode_rc sve_cmphi_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 unsigned int imm) {
  return compare_immediate<kUnsigned>(s, pd, pg, zn, imm, gt_op{});
}
aarch64_decode_rc sve_cmplo_ppzi(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 unsigned int imm) {
  return compare_immediate<kUnsigned>(s, pd, pg, zn, imm, lt_op{});
}

} // namespace ZORVO_LENGTH
