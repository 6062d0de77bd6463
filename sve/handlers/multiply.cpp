// Integer multiply and multiply-add: the low half of each product, modulo
// the element width.
#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"

namespace ZORVO_LENGTH {

namespace {

struct mul_op {
  template <typename T> T operator()(T a, T b) const { return mul_wrap(a, b); }
};

// Zda +/- Zn x Zm (mla, mls).
template <bool Subtract> struct accumulate_op {
  template <typename T> T operator()(T acc, T n, T m) const {
    const T product = mul_wrap(n, m);
    return static_cast<T>(Subtract ? acc - product : acc + product);
  }
};

// Za +/- Zdn x Zm (mad, msb): the multiplicand is the destination.
template <bool Subtract> struct addend_op {
  template <typename T> T operator()(T dn, T m, T a) const {
    return accumulate_op<Subtract>{}(a, dn, m);
  }
};

} // namespace

aarch64_decode_rc sve_mul_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, mul_op{}, zm);
}

aarch64_decode_rc sve_mul_zi(cpu_state* s, aarch64_z_reg zdn, int imm) {
  return immediate_any(s, zdn, imm, mul_op{});
}

aarch64_decode_rc sve_mla_zpzz(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  return merge_any(s, zda, pg, accumulate_op<false>{}, zn, zm);
}

aarch64_decode_rc sve_mls_zpzz(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  return merge_any(s, zda, pg, accumulate_op<true>{}, zn, zm);
}

aarch64_decode_rc sve_mad_zpzz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                               aarch64_z_reg za) {
  return merge_any(s, zdn, pg, addend_op<false>{}, zm, za);
}

aarch64_decode_rc sve_msb_zpzz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                               aarch64_z_reg za) {
  return merge_any(s, zdn, pg, addend_op<true>{}, zm, za);
}

} // namespace ZORVO_LENGTH
