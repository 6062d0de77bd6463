// Integer divide, maximum and minimum, and negate: merging forms.
#include <type_traits>

#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"

namespace ZORVO_LENGTH {

namespace {

// The instruction's rules, which the host divide follows too: a division by
// zero gives 0, and the most negative value divided by -1 gives itself.
struct signed_div {
  template <typename T> T operator()(T dividend, T divisor) const {
    using S = std::make_signed_t<T>;
    const S n = static_cast<S>(dividend), d = static_cast<S>(divisor);
    if (d == 0) return 0;
    if (d == -1) return static_cast<T>(T{0} - dividend); // wraps for the most negative
    return static_cast<T>(n / d);
  }
};

struct unsigned_div {
  template <typename T> T operator()(T dividend, T divisor) const {
    return divisor == 0 ? T{0} : static_cast<T>(dividend / divisor);
  }
};

// The reversed forms divide Zm by Zdn and still write Zdn.
template <typename Div> struct reversed {
  template <typename T> T operator()(T zdn, T zm) const { return Div{}(zm, zdn); }
};

template <typename Div>
aarch64_decode_rc divide_any(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  by_word_size(zdn.rw_elem, [&](auto t) { merge_into<decltype(t)>(s, zdn, pg, Div{}, zm); });
  return AARCH64_DECODE_OK;
}

template <bool Signed, bool Larger> struct select_op {
  template <typename T> T operator()(T a, T b) const {
    using C = std::conditional_t<Signed, std::make_signed_t<T>, T>;
    const bool a_less = static_cast<C>(a) < static_cast<C>(b);
    return a_less == Larger ? b : a;
  }
};

struct negate {
  template <typename T> T operator()(T v) const { return static_cast<T>(T{0} - v); }
};

} // namespace

aarch64_decode_rc sve_sdiv_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return divide_any<signed_div>(s, zdn, pg, zm);
}

aarch64_decode_rc sve_sdivr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                aarch64_z_reg zm) {
  return divide_any<reversed<signed_div>>(s, zdn, pg, zm);
}

aarch64_decode_rc sve_udiv_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return divide_any<unsigned_div>(s, zdn, pg, zm);
}

aarch64_decode_rc sve_udivr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                aarch64_z_reg zm) {
  return divide_any<reversed<unsigned_div>>(s, zdn, pg, zm);
}

aarch64_decode_rc sve_smax_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, select_op<true, true>{}, zm);
}

aarch64_decode_rc sve_smin_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, select_op<true, false>{}, zm);
}

aarch64_decode_rc sve_umax_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, select_op<false, true>{}, zm);
}

aarch64_decode_rc sve_umin_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, select_op<false, false>{}, zm);
}

aarch64_decode_rc sve_neg_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary_any(s, zd, pg, zn, negate{});
}

} // namespace ZORVO_LENGTH
