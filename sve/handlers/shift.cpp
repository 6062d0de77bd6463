// Shifts by a vector of counts and by an immediate. Every count is defined:
// a logical shift by the element width or more gives 0, and an arithmetic
// shift right by that much fills the element with its sign bit.
#include <type_traits>

#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"

namespace ZORVO_LENGTH {

namespace {

template <typename T> constexpr unsigned bits_of = 8 * sizeof(T);

// Bytes and halfwords go through unsigned int so that the shift never
// reaches the sign bit of a promoted int.
template <typename T> using shift_wide = std::conditional_t<(sizeof(T) < 4), unsigned, T>;

// Zm's element is the count, read unsigned at full width, so a halfword
// count of 256 is not taken modulo 16.
struct lsl_by_vector {
  template <typename T> T operator()(T v, T count) const {
    return count >= bits_of<T> ? T{0} : static_cast<T>(static_cast<shift_wide<T>>(v) << count);
  }
};
struct lsr_by_vector {
  template <typename T> T operator()(T v, T count) const {
    return count >= bits_of<T> ? T{0} : static_cast<T>(v >> count);
  }
};
struct asr_by_vector {
  template <typename T> T operator()(T v, T count) const {
    const unsigned c = count >= bits_of<T> ? bits_of<T> - 1 : static_cast<unsigned>(count);
    return static_cast<T>(static_cast<std::make_signed_t<T>>(v) >> c);
  }
};

template <typename T> using vec_of = typename simd128<T>::type;

template <typename T> vec_of<T> shift_left(vec_of<T> x, unsigned count) {
  if (count >= bits_of<T>) return vec_of<T>{};
  return x << count;
}

template <typename T> vec_of<T> shift_right_signed(vec_of<T> x, unsigned count) {
  using signed_vec = vec_of<std::make_signed_t<T>>;
  const unsigned c = count >= bits_of<T> ? bits_of<T> - 1 : count;
  return reinterpret_cast<vec_of<T>>(reinterpret_cast<signed_vec>(x) >> c);
}

// Shifts all elements of src with host vector operations. With a predicate,
// the result is blended under a mask that tests each element-wide predicate
// word AND 1: bit 0 of the element's first predicate byte, as everywhere.
template <typename T, typename Shift>
void shift_chunks(uint8_t* dst, const uint8_t* src, const uint8_t* pred, Shift shift) {
  using V = vec_of<T>;
  vreg out;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    V x;
    std::memcpy(&x, src + 16 * chunk, 16);
    V r = shift(x);
    if (pred) {
      V p;
      std::memcpy(&p, pred + 16 * chunk, 16);
      const V on = reinterpret_cast<V>((p & 1) != 0);
      r = (r & on) | (x & ~on);
    }
    std::memcpy(out.b + 16 * chunk, &r, 16);
  }
  commit(dst, out);
}

template <bool Left>
void shift_immediate(cpu_state* s, uint32_t size, unsigned dst, unsigned src, const uint8_t* pred,
                     unsigned count) {
  by_element_size(size, [&](auto t) {
    using T = decltype(t);
    shift_chunks<T>(s->z[dst], s->z[src], pred, [count](vec_of<T> x) {
      return Left ? shift_left<T>(x, count) : shift_right_signed<T>(x, count);
    });
  });
}

} // namespace

aarch64_decode_rc sve_lsl_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, lsl_by_vector{}, zm);
}

aarch64_decode_rc sve_lsr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, lsr_by_vector{}, zm);
}

aarch64_decode_rc sve_asr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, asr_by_vector{}, zm);
}

aarch64_decode_rc sve_lsl_zpi(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                              unsigned int shift) {
  shift_immediate<true>(s, zdn.rw_elem, zdn.num, zdn.num, s->p[pg.num], shift);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_asr_zpi(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                              unsigned int shift) {
  shift_immediate<false>(s, zdn.rw_elem, zdn.num, zdn.num, s->p[pg.num], shift);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_lsl_zzi(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                              unsigned int shift) {
  shift_immediate<true>(s, zd.elem, zd.num, zn.num, nullptr, shift);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_asr_zzi(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                              unsigned int shift) {
  shift_immediate<false>(s, zd.elem, zd.num, zn.num, nullptr, shift);
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
