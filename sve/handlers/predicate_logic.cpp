// Predicate logic, select and unpack. Logic and select see a register's bytes as
// independent elements whatever size the operands were written at; the
// unpacks write halfword elements.
#include "../state/cpu_state.h"
#include "predicate_form.h"

namespace ZORVO_LENGTH {

namespace {

// Each operation looks at bit 0 of its bytes only and gives 0 or 1.
struct and_op {
  uint8_t operator()(uint8_t n, uint8_t m) const { return n & m & 1; }
};
struct bic_op {
  uint8_t operator()(uint8_t n, uint8_t m) const { return n & ~m & 1; }
};
struct eor_op {
  uint8_t operator()(uint8_t n, uint8_t m) const { return (n ^ m) & 1; }
};
struct orr_op {
  uint8_t operator()(uint8_t n, uint8_t m) const { return (n | m) & 1; }
};
struct nor_op {
  uint8_t operator()(uint8_t n, uint8_t m) const { return ~(n | m) & 1; }
};

// A byte that Pg leaves inactive becomes 0 under zeroing and keeps Pd's own
// byte under merging. The logic decoders always pass zeroing.
template <typename Op>
aarch64_decode_rc predicate_logic(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                  aarch64_p_reg pn, aarch64_p_reg pm, Op op) {
  const uint8_t* g = s->p[pg.num];
  const uint8_t* n = s->p[pn.num];
  const uint8_t* m = s->p[pm.num];
  const uint8_t* d = s->p[pd.num];
  const bool zeroing = pg.elem == kPZeroing;
  vreg result;
  for (unsigned i = 0; i < vector_bytes(); ++i)
    result.b[i] = (g[i] & 1) ? op(n[i], m[i]) : zeroing ? 0 : d[i];
  commit(s->p[pd.num], result);
  return AARCH64_DECODE_OK;
}

// Halfword i of Pd is bit 0 of byte `from + i` of Pn.
aarch64_decode_rc unpack_half(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn, unsigned from) {
  const uint8_t* n = s->p[pn.num];
  vreg result;
  for (unsigned i = 0; i < vector_bytes() / 2; ++i)
    set_pred_elem<uint16_t>(result.b, i, n[from + i] & 1);
  commit(s->p[pd.num], result);
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_and_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  return predicate_logic(s, pd, pg, pn, pm, and_op{});
}
aarch64_decode_rc sve_bic_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  return predicate_logic(s, pd, pg, pn, pm, bic_op{});
}
aarch64_decode_rc sve_eor_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  return predicate_logic(s, pd, pg, pn, pm, eor_op{});
}
aarch64_decode_rc sve_orr_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  return predicate_logic(s, pd, pg, pn, pm, orr_op{});
}
aarch64_decode_rc sve_nor_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  return predicate_logic(s, pd, pg, pn, pm, nor_op{});
}

// Byte i is Pn's where bit 0 of Pg's byte is set and Pm's where not: a mask
// made of bit 0 picks between the two, 16 bytes at a time.
aarch64_decode_rc sve_sel_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                               aarch64_p_reg pm) {
  using V = simd128<uint8_t>::type;
  vreg result;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    V g, n, m;
    std::memcpy(&g, s->p[pg.num] + 16 * chunk, 16);
    std::memcpy(&n, s->p[pn.num] + 16 * chunk, 16);
    std::memcpy(&m, s->p[pm.num] + 16 * chunk, 16);
    const V take_n = -(g & 1);
    const V r = (n & take_n) | (m & ~take_n);
    std::memcpy(result.b + 16 * chunk, &r, 16);
  }
  commit(s->p[pd.num], result);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_punpklo_pp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn) {
  return unpack_half(s, pd, pn, 0);
}
aarch64_decode_rc sve_punpkhi_pp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pn) {
  return unpack_half(s, pd, pn, vector_bytes() / 2);
}

} // namespace ZORVO_LENGTH
