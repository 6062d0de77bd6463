// Floating-point compares into a predicate, against a vector or against
// zero. The result is zeroing: an inactive element is false. The host
// compare sets the host's flags, which only pick the result; the emulated
// NZCV is left alone.
#include "../state/cpu_state.h"
#include "fp_element.h"

namespace ZORVO_LENGTH {

namespace {

constexpr uint64_t kN = uint64_t{1} << 31, kZ = uint64_t{1} << 30, kC = uint64_t{1} << 29,
                   kV = uint64_t{1} << 28;

// Conditions on the flags of fcmp a, b. Unordered (C and V set) makes all
// of them false but ne and uo.
struct cond_eq {
  bool operator()(uint64_t f) const { return f & kZ; }
};
struct cond_ne {
  bool operator()(uint64_t f) const { return !(f & kZ); }
};
struct cond_uo {
  bool operator()(uint64_t f) const { return f & kV; }
};
struct cond_ge {
  bool operator()(uint64_t f) const { return !(f & kN) == !(f & kV); }
};
struct cond_gt {
  bool operator()(uint64_t f) const { return !(f & kZ) && !(f & kN) == !(f & kV); }
};
struct cond_le {
  bool operator()(uint64_t f) const { return (f & kZ) || !(f & kC); }
};
struct cond_lt {
  bool operator()(uint64_t f) const { return f & kN; }
};

// The quiet compare raises Invalid Operation for a signalling NaN only;
// the ordering compares use the signalling one, which raises it for any NaN.
struct quiet {
  template <typename T> uint64_t operator()(T a, T b) const { return host_fcmp(a, b); }
};
struct signalling {
  template <typename T> uint64_t operator()(T a, T b) const { return host_fcmpe(a, b); }
};

// Element i of Pd becomes an element-wide 1 or 0, so only its first byte
// can be set; right(i) is the second operand of element i.
template <typename T, typename Compare, typename Cond, typename Right>
void compare(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn, Right right,
             Compare compare_op, Cond cond) {
  using U = bits_of<T>;
  const uint8_t* n = s->z[zn.num];
  const uint8_t* mask = s->p[pg.num];
  vreg result;
  const unsigned count = elements_of<T>();
#pragma GCC unroll 12
  for (unsigned i = 0; i < count; ++i) {
    const bool on = active<T>(mask, i) && cond(compare_op(load_elem<T>(n, i), right(i)));
    store_elem<U>(result.b, i, on ? U{1} : U{0});
  }
  commit(s->p[pd.num], result);
}

template <typename Compare, typename Cond>
aarch64_decode_rc with_vector(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                              aarch64_z_reg zm, Compare compare_op, Cond cond) {
  by_fp_size(zn.elem, [&](auto t) {
    using T = decltype(t);
    const uint8_t* m = s->z[zm.num];
    compare<T>(
        s, pd, pg, zn, [m](unsigned i) { return load_elem<T>(m, i); }, compare_op, cond);
  });
  return AARCH64_DECODE_OK;
}

template <typename Compare, typename Cond>
aarch64_decode_rc with_zero(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                            Compare compare_op, Cond cond) {
  by_fp_size(zn.elem, [&](auto t) {
    using T = decltype(t);
    compare<T>(
        s, pd, pg, zn, [](unsigned) { return T{}; }, compare_op, cond);
  });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_fcmeq_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return with_vector(s, pd, pg, zn, zm, quiet{}, cond_eq{});
}
aarch64_decode_rc sve_fcmne_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return with_vector(s, pd, pg, zn, zm, quiet{}, cond_ne{});
}
aarch64_decode_rc sve_fcmuo_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return with_vector(s, pd, pg, zn, zm, quiet{}, cond_uo{});
}
aarch64_decode_rc sve_fcmge_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return with_vector(s, pd, pg, zn, zm, signalling{}, cond_ge{});
}
aarch64_decode_rc sve_fcmgt_ppzz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  return with_vector(s, pd, pg, zn, zm, signalling{}, cond_gt{});
}

aarch64_decode_rc sve_fcmeq_ppz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  return with_zero(s, pd, pg, zn, quiet{}, cond_eq{});
}
aarch64_decode_rc sve_fcmge_ppz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  return with_zero(s, pd, pg, zn, signalling{}, cond_ge{});
}
aarch64_decode_rc sve_fcmgt_ppz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  return with_zero(s, pd, pg, zn, signalling{}, cond_gt{});
}
aarch64_decode_rc sve_fcmle_ppz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  return with_zero(s, pd, pg, zn, signalling{}, cond_le{});
}
aarch64_decode_rc sve_fcmlt_ppz(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  return with_zero(s, pd, pg, zn, signalling{}, cond_lt{});
}

} // namespace ZORVO_LENGTH
