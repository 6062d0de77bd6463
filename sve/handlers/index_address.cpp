// Index series, vector address generation and the vector-length scalars.
#include "../state/cpu_state.h"
#include "element.h"

namespace ZORVO_LENGTH {

namespace {

// Element i becomes base + i x step modulo the element width: only the low
// bits of base and step count below size d. The sources are scalars, read
// before the first store, so Zd is written in place.
aarch64_decode_rc index_any(cpu_state* s, aarch64_z_reg zd, uint64_t base, uint64_t step) {
  by_element_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    const T b = static_cast<T>(base), st = static_cast<T>(step);
    for (unsigned i = 0; i < elements_of<T>(); ++i)
      store_elem<T>(s->z[zd.num], i, static_cast<T>(b + mul_wrap(static_cast<T>(i), st)));
  });
  return AARCH64_DECODE_OK;
}

// An immediate is sign-extended to 64 bits before it is cut to the element.
uint64_t widen(int imm) { return static_cast<uint64_t>(static_cast<int64_t>(imm)); }

} // namespace

aarch64_decode_rc sve_index_zii(cpu_state* s, aarch64_z_reg zd, int start, int step) {
  return index_any(s, zd, widen(start), widen(step));
}

aarch64_decode_rc sve_index_zir(cpu_state* s, aarch64_z_reg zd, int start, aarch64_i_reg step) {
  return index_any(s, zd, widen(start), read_reg(s, step));
}

aarch64_decode_rc sve_index_zri(cpu_state* s, aarch64_z_reg zd, aarch64_i_reg start, int step) {
  return index_any(s, zd, read_reg(s, start), widen(step));
}

aarch64_decode_rc sve_index_zrr(cpu_state* s, aarch64_z_reg zd, aarch64_i_reg start,
                                aarch64_i_reg step) {
  return index_any(s, zd, read_reg(s, start), read_reg(s, step));
}

// The packed 64-bit form: the offset's shift is in bits 11:10 of the word,
// which the decoders do not pass on.
aarch64_decode_rc sve_adr_scaled_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                                     aarch64_z_reg zm) {
  const unsigned shift = static_cast<unsigned>(s->raw_instr >> 10) & 3;
  const uint8_t* n = s->z[zn.num];
  const uint8_t* m = s->z[zm.num];
  vreg out;
  for (unsigned i = 0; i < elements_of<uint64_t>(); ++i)
    store_elem<uint64_t>(out.b, i,
                         load_elem<uint64_t>(n, i) + (load_elem<uint64_t>(m, i) << shift));
  commit(s->z[zd.num], out);
  return AARCH64_DECODE_OK;
}

// Number 31 is SP on both sides for addvl and addpl, and the zero register
// for rdvl, whose write to it is dropped.
aarch64_decode_rc sve_addvl_rri(cpu_state* s, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm) {
  write_reg(s, xd, read_reg(s, xn) + widen(imm * static_cast<int>(vector_bytes())));
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_addpl_rri(cpu_state* s, aarch64_i_rsp_reg xd, aarch64_i_rsp_reg xn, int imm) {
  write_reg(s, xd, read_reg(s, xn) + widen(imm * static_cast<int>(vector_bytes() / 8)));
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_rdvl_ri(cpu_state* s, aarch64_i_reg xd, int imm) {
  write_reg(s, xd, widen(imm * static_cast<int>(vector_bytes())));
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
