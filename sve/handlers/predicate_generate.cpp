// Predicates made from nothing but operands: pfalse, ptrue with a pattern,
// and the while family, whose run of true elements stops at the first
// element that fails its compare and which sets the flags.
#include <limits>
#include <type_traits>

#include "../state/cpu_state.h"
#include "pattern_count.h"
#include "predicate_scan.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

aarch64_decode_rc sve_pfalse_p(cpu_state* s, aarch64_p_reg pd) {
  std::memset(s->p[pd.num], 0, vector_bytes());
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_ptrue_pi(cpu_state* s, aarch64_p_reg pd, unsigned int pattern) {
  by_element_size(pd.elem, [&](auto t) {
    using T = decltype(t);
    const unsigned n = pattern_count<T>(pattern);
    for (unsigned i = 0; i < elements_of<T>(); ++i) set_pred_elem<T>(s->p[pd.num], i, i < n);
  });
  return AARCH64_DECODE_OK;
}

namespace {

struct less_than {
  static constexpr bool inclusive = false;
  template <typename R> bool operator()(R a, R b) const { return a < b; }
};
struct lower_or_same {
  static constexpr bool inclusive = true;
  template <typename R> bool operator()(R a, R b) const { return a <= b; }
};

constexpr bool kSigned = true, kUnsigned = false;

// T is the predicate element, R the register as compared: 32 or 64 bits,
// signed or not. Rn + i wraps at the register width.
//
// The largest value of R fails "<" against any Rm, so a "<" run ends before
// Rn + i wraps and is the distance from Rn to Rm, capped. "<=" passes it only
// when Rm is that largest value: then every element passes, through the wrap;
// otherwise the run is one longer than for "<".
template <typename T, typename R, typename Cond>
void while_run(cpu_state* s, aarch64_p_reg pd, R rn, R rm, Cond cond) {
  using U = std::make_unsigned_t<R>;
  const unsigned elements = elements_of<T>(), per_chunk = 16 / sizeof(T);
  unsigned count = 0;
  if (Cond::inclusive && rm == std::numeric_limits<R>::max()) {
    count = elements;
  } else if (cond(rn, rm)) {
    const U gap = static_cast<U>(static_cast<U>(rm) - static_cast<U>(rn));
    count = gap >= elements ? elements : static_cast<unsigned>(gap) + Cond::inclusive;
    if (count > elements) count = elements;
  }
  vreg result;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    lanes128<T> index;
    for (unsigned l = 0; l < per_chunk; ++l) index[l] = static_cast<T>(chunk * per_chunk + l);
    // count - 1, not count: 256 byte elements do not fit a byte.
    const lanes128<T> inside =
        count == 0 ? lanes128<T>{}
                   : reinterpret_cast<lanes128<T>>(index <= static_cast<T>(count - 1));
    store_chunk<T>(result.b, chunk, inside & static_cast<T>(1));
  }
  write_flags(s, {count > 0, count == 0, count < elements, false});
  commit(s->p[pd.num], result);
}

// The width rides in the Rn descriptor: 3 is the X form, anything else the
// W form, which compares the low halves only.
template <bool Signed, typename Cond>
aarch64_decode_rc while_any(cpu_state* s, aarch64_p_reg pd, aarch64_i_reg rn, aarch64_i_reg rm,
                            Cond cond) {
  const uint64_t n = read_reg(s, rn), m = read_reg(s, rm);
  by_element_size(pd.elem, [&](auto t) {
    using T = decltype(t);
    if (rn.elem == ELEM_D) {
      using R = std::conditional_t<Signed, int64_t, uint64_t>;
      while_run<T>(s, pd, static_cast<R>(n), static_cast<R>(m), cond);
    } else {
      using R = std::conditional_t<Signed, int32_t, uint32_t>;
      while_run<T>(s, pd, static_cast<R>(n), static_cast<R>(m), cond);
    }
  });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_whilelt_prr(cpu_state* s, aarch64_p_reg pd, aarch64_i_reg rn,
                                  aarch64_i_reg rm) {
  return while_any<kSigned>(s, pd, rn, rm, less_than{});
}

aarch64_decode_rc sve_whilelo_prr(cpu_state* s, aarch64_p_reg pd, aarch64_i_reg rn,
                                  aarch64_i_reg rm) {
  return while_any<kUnsigned>(s, pd, rn, rm, less_than{});
}

aarch64_decode_rc sve_whilels_prr(cpu_state* s, aarch64_p_reg pd, aarch64_i_reg rn,
                                  aarch64_i_reg rm) {
  return while_any<kUnsigned>(s, pd, rn, rm, lower_or_same{});
}

} // namespace ZORVO_LENGTH
