// Integer reductions of the active elements into a SIMD&FP scalar: uaddv,
// the bitwise andv, orv, eorv, and the signed and unsigned minimum and
// maximum. None of them sets flags. The result is written as any scalar
// SIMD&FP result is: at its own width, with zeros above it to byte 47, so a
// signed result is not sign-extended.
#include <limits>
#include <type_traits>

#include "../state/cpu_state.h"
#include "fp_element.h"

namespace ZORVO_LENGTH {

namespace {

// Folds the active elements of Zn, read as T, into `start`, from the lowest
// element upwards. With none active the start value is the result.
template <typename T, typename Acc, typename Op>
Acc fold_active(const cpu_state* s, aarch64_p_reg pg, aarch64_z_reg zn, Acc start, Op op) {
  const uint8_t* n = s->z[zn.num];
  const uint8_t* p = s->p[pg.num];
  Acc acc = start;
  for (unsigned i = 0; i < elements_of<T>(); ++i)
    if (active<T>(p, i)) acc = op(acc, load_elem<T>(n, i));
  return acc;
}

// Start values are those that leave any element unchanged, so a reduction
// without active elements writes them: all ones for AND and unsigned
// minimum, the extremes of the signed range for the signed minimum and
// maximum, 0 otherwise.
struct and_op {
  template <typename T> T operator()(T a, T b) const { return a & b; }
  template <typename T> static T start() { return static_cast<T>(~T{0}); }
};
struct or_op {
  template <typename T> T operator()(T a, T b) const { return a | b; }
  template <typename T> static T start() { return 0; }
};
struct eor_op {
  template <typename T> T operator()(T a, T b) const { return a ^ b; }
  template <typename T> static T start() { return 0; }
};
struct max_op {
  template <typename T> T operator()(T a, T b) const { return a > b ? a : b; }
  template <typename T> static T start() { return std::numeric_limits<T>::min(); }
};
struct min_op {
  template <typename T> T operator()(T a, T b) const { return a < b ? a : b; }
  template <typename T> static T start() { return std::numeric_limits<T>::max(); }
};

constexpr bool kSigned = true, kUnsigned = false;

// The result keeps the element width.
template <bool Signed, typename Op>
aarch64_decode_rc reduce(cpu_state* s, unsigned vd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  by_element_size(zn.elem, [&](auto u) {
    using T = std::conditional_t<Signed, std::make_signed_t<decltype(u)>, decltype(u)>;
    write_scalar<T>(s, vd, fold_active<T>(s, pg, zn, Op::template start<T>(), op));
  });
  return AARCH64_DECODE_OK;
}

} // namespace

// The sum of zero-extended elements is 64 bits wide at every element size:
// it does not wrap at the element width.
aarch64_decode_rc sve_uaddv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  by_element_size(zn.elem, [&](auto t) {
    using T = decltype(t);
    const uint64_t sum =
        fold_active<T>(s, pg, zn, uint64_t{0}, [](uint64_t acc, T e) { return acc + e; });
    write_scalar<uint64_t>(s, vd, sum);
  });
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_andv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kUnsigned>(s, vd, pg, zn, and_op{});
}
aarch64_decode_rc sve_orv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kUnsigned>(s, vd, pg, zn, or_op{});
}
aarch64_decode_rc sve_eorv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kUnsigned>(s, vd, pg, zn, eor_op{});
}
aarch64_decode_rc sve_smaxv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kSigned>(s, vd, pg, zn, max_op{});
}
aarch64_decode_rc sve_sminv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kSigned>(s, vd, pg, zn, min_op{});
}
aarch64_decode_rc sve_umaxv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kUnsigned>(s, vd, pg, zn, max_op{});
}
aarch64_decode_rc sve_uminv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return reduce<kUnsigned>(s, vd, pg, zn, min_op{});
}

} // namespace ZORVO_LENGTH
