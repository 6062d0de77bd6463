// The first-fault register: set, read (plain or under a predicate) and
// write. It has the form of a predicate, so these are byte copies.
#include "../state/cpu_state.h"
#include "element.h"

namespace ZORVO_LENGTH {

aarch64_decode_rc sve_setffr(cpu_state* s) {
  std::memset(s->ffr, 1, vector_bytes());
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_rdffr_p(cpu_state* s, aarch64_p_reg pd) {
  std::memcpy(s->p[pd.num], s->ffr, vector_bytes());
  return AARCH64_DECODE_OK;
}

// FFR and Pg byte by byte: inactive bytes become 0, and no flags.
aarch64_decode_rc sve_rdffr_pp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg) {
  const uint8_t* g = s->p[pg.num];
  vreg result;
  for (unsigned i = 0; i < vector_bytes(); ++i) result.b[i] = s->ffr[i] & g[i] & 1;
  commit(s->p[pd.num], result);
  return AARCH64_DECODE_OK;
}

// Whether Pn is a monotonic run of true elements is not checked.
aarch64_decode_rc sve_wrffr_p(cpu_state* s, aarch64_p_reg pn) {
  std::memcpy(s->ffr, s->p[pn.num], vector_bytes());
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
