// Replicating loads LD1R: one memory element, widened, into every active
// element. They make no trace record.
#include "../memory/app_memory.h"
#include "../state/cpu_state.h"
#include "element.h"

namespace ZORVO_LENGTH {

namespace {

// The element is read anew for each active element, as the instruction set
// describes, and not at all when none is active: an all-inactive predicate
// leaves even a bad address untouched.
template <typename T, typename U>
aarch64_decode_rc load_replicated(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                                  aarch64_i_rsp_reg xn, unsigned int imm) {
  const uint64_t addr = read_reg(s, xn) + uint64_t{imm} * sizeof(T);
  const uint8_t* pred = s->p[pg.num];
  uint8_t* z = s->z[zt.num];
  for (unsigned i = 0; i < elements_of<U>(); ++i)
    store_elem<U>(z, i, active<U>(pred, i) ? static_cast<U>(read_app<T>(addr)) : U{0});
  return AARCH64_DECODE_OK;
}

} // namespace

#define REPLICATING_LOAD(name, T, U)                                                               \
  aarch64_decode_rc name(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg xn,   \
                         unsigned int imm) {                                                       \
    return load_replicated<T, U>(s, zt, pg, xn, imm);                                              \
  }

REPLICATING_LOAD(sve_ld1rb_zpri, uint8_t, uint8_t)
REPLICATING_LOAD(sve_ld1rb_h_zpri, uint8_t, uint16_t)
REPLICATING_LOAD(sve_ld1rb_s_zpri, uint8_t, uint32_t)
REPLICATING_LOAD(sve_ld1rb_d_zpri, uint8_t, uint64_t)
REPLICATING_LOAD(sve_ld1rsb_h_zpri, int8_t, uint16_t)
REPLICATING_LOAD(sve_ld1rsb_s_zpri, int8_t, uint32_t)
REPLICATING_LOAD(sve_ld1rsb_d_zpri, int8_t, uint64_t)
REPLICATING_LOAD(sve_ld1rh_zpri, uint16_t, uint16_t)
REPLICATING_LOAD(sve_ld1rh_s_zpri, uint16_t, uint32_t)
REPLICATING_LOAD(sve_ld1rh_d_zpri, uint16_t, uint64_t)
REPLICATING_LOAD(sve_ld1rsh_s_zpri, int16_t, uint32_t)
REPLICATING_LOAD(sve_ld1rsh_d_zpri, int16_t, uint64_t)
REPLICATING_LOAD(sve_ld1rw_zpri, uint32_t, uint32_t)
REPLICATING_LOAD(sve_ld1rw_d_zpri, uint32_t, uint64_t)
REPLICATING_LOAD(sve_ld1rsw_d_zpri, int32_t, uint64_t)
REPLICATING_LOAD(sve_ld1rd_zpri, uint64_t, uint64_t)

} // namespace ZORVO_LENGTH
