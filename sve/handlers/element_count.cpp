// Element counts and their steps: a general register or every vector element
// moved by a pattern's count times a multiplier, the count of a predicate's
// true elements, and the one saturating step with a fast path (uqdecb).
// None of them sets flags.
#include "../state/cpu_state.h"
#include "pattern_count.h"
#include "predicate_scan.h"

namespace ZORVO_LENGTH {

namespace {

// At most 256 x 16, so the product cannot overflow.
template <typename T> uint64_t pattern_step(unsigned pattern, unsigned multiplier) {
  return uint64_t{pattern_count<T>(pattern) * multiplier};
}

// These forms wrap modulo 2^64: they do not saturate.
template <typename T>
aarch64_decode_rc step_register(cpu_state* s, aarch64_i_reg xdn, unsigned pattern,
                                unsigned multiplier, bool decrement) {
  const uint64_t step = pattern_step<T>(pattern, multiplier);
  const uint64_t x = read_reg(s, xdn);
  write_reg(s, xdn, decrement ? x - step : x + step);
  return AARCH64_DECODE_OK;
}

template <typename T>
aarch64_decode_rc step_vector(cpu_state* s, aarch64_z_reg zdn, unsigned pattern,
                              unsigned multiplier, bool decrement) {
  const T step = static_cast<T>(pattern_step<T>(pattern, multiplier));
  vreg steps;
  for (unsigned i = 0; i < elements_of<T>(); ++i) store_elem<T>(steps.b, i, step);
  uint8_t* z = s->z[zdn.num];
  if (decrement)
    unpredicated_simd<T>(z, z, steps.b, [](auto a, auto b) { return a - b; });
  else
    unpredicated_simd<T>(z, z, steps.b, [](auto a, auto b) { return a + b; });
  return AARCH64_DECODE_OK;
}

constexpr bool kIncrement = false, kDecrement = true;

} // namespace

aarch64_decode_rc sve_incb_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint8_t>(s, xdn, pattern, multiplier, kIncrement);
}
aarch64_decode_rc sve_inch_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint16_t>(s, xdn, pattern, multiplier, kIncrement);
}
aarch64_decode_rc sve_incw_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint32_t>(s, xdn, pattern, multiplier, kIncrement);
}
aarch64_decode_rc sve_incd_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint64_t>(s, xdn, pattern, multiplier, kIncrement);
}

aarch64_decode_rc sve_decb_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint8_t>(s, xdn, pattern, multiplier, kDecrement);
}
aarch64_decode_rc sve_dech_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint16_t>(s, xdn, pattern, multiplier, kDecrement);
}
aarch64_decode_rc sve_decw_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint32_t>(s, xdn, pattern, multiplier, kDecrement);
}
aarch64_decode_rc sve_decd_rii(cpu_state* s, aarch64_i_reg xdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_register<uint64_t>(s, xdn, pattern, multiplier, kDecrement);
}

aarch64_decode_rc sve_inch_zii(cpu_state* s, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_vector<uint16_t>(s, zdn, pattern, multiplier, kIncrement);
}
aarch64_decode_rc sve_incw_zii(cpu_state* s, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_vector<uint32_t>(s, zdn, pattern, multiplier, kIncrement);
}
aarch64_decode_rc sve_incd_zii(cpu_state* s, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_vector<uint64_t>(s, zdn, pattern, multiplier, kIncrement);
}
aarch64_decode_rc sve_dech_zii(cpu_state* s, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_vector<uint16_t>(s, zdn, pattern, multiplier, kDecrement);
}
aarch64_decode_rc sve_decw_zii(cpu_state* s, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_vector<uint32_t>(s, zdn, pattern, multiplier, kDecrement);
}
aarch64_decode_rc sve_decd_zii(cpu_state* s, aarch64_z_reg zdn, unsigned int pattern,
                               unsigned int multiplier) {
  return step_vector<uint64_t>(s, zdn, pattern, multiplier, kDecrement);
}

aarch64_decode_rc sve_incp_rp(cpu_state* s, aarch64_i_reg xdn, aarch64_p_reg pm) {
  unsigned count = 0;
  by_element_size(pm.elem, [&](auto t) { count = count_active<decltype(t)>(s->p[pm.num]); });
  write_reg(s, xdn, read_reg(s, xdn) + count);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_cntp_rpp(cpu_state* s, aarch64_i_reg xd, aarch64_p_reg pg, aarch64_p_reg pn) {
  const uint8_t* g = s->p[pg.num];
  const uint8_t* n = s->p[pn.num];
  const pred_bits both = pack_predicate(g) & pack_predicate(n);
  unsigned count = 0;
  by_element_size(pn.elem,
                  [&](auto t) { count = count_set(both & element_starts<decltype(t)>()); });
  write_reg(s, xd, count);
  return AARCH64_DECODE_OK;
}

// The register width rides in the descriptor: 3 is the X form; the W form
// works on the low half and always clears the upper one.
aarch64_decode_rc sve_uqdecb_rii(cpu_state* s, aarch64_i_reg rdn, unsigned int pattern,
                                 unsigned int multiplier) {
  uint64_t value = read_reg(s, rdn);
  if (rdn.rw_elem != ELEM_D) value &= 0xffffffffu;
  const uint64_t step = pattern_step<uint8_t>(pattern, multiplier);
  write_reg(s, rdn, value > step ? value - step : 0);
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
