// Contiguous loads and stores LD1, ST1, LDNT1 and STNT1 in both address
// forms. Loads widen with zero or sign extension (a signed memory type);
// stores narrow by truncation. The non-temporal hint has no host counterpart,
// so LDNT1 and STNT1 are the same-size LD1 and ST1.
#include "contiguous.h"
#include "../state/cpu_state.h"

namespace ZORVO_LENGTH {

CONTIGUOUS_FORMS(memaccess_load, sve_ld1b_zpri, sve_ld1b_scaled_zprr, uint8_t, uint8_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1b_h_zpri, sve_ld1b_h_scaled_zprr, uint8_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1b_s_zpri, sve_ld1b_s_scaled_zprr, uint8_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1b_d_zpri, sve_ld1b_d_scaled_zprr, uint8_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1sb_h_zpri, sve_ld1sb_h_scaled_zprr, int8_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1sb_s_zpri, sve_ld1sb_s_scaled_zprr, int8_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1sb_d_zpri, sve_ld1sb_d_scaled_zprr, int8_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1h_zpri, sve_ld1h_scaled_zprr, uint16_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1h_s_zpri, sve_ld1h_s_scaled_zprr, uint16_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1h_d_zpri, sve_ld1h_d_scaled_zprr, uint16_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1sh_s_zpri, sve_ld1sh_s_scaled_zprr, int16_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1sh_d_zpri, sve_ld1sh_d_scaled_zprr, int16_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1w_zpri, sve_ld1w_scaled_zprr, uint32_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1w_d_zpri, sve_ld1w_d_scaled_zprr, uint32_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1sw_d_zpri, sve_ld1sw_d_scaled_zprr, int32_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ld1d_zpri, sve_ld1d_scaled_zprr, uint64_t, uint64_t)

CONTIGUOUS_FORMS(memaccess_load, sve_ldnt1b_zpri, sve_ldnt1b_scaled_zprr, uint8_t, uint8_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ldnt1h_zpri, sve_ldnt1h_scaled_zprr, uint16_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ldnt1w_zpri, sve_ldnt1w_scaled_zprr, uint32_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_load, sve_ldnt1d_zpri, sve_ldnt1d_scaled_zprr, uint64_t, uint64_t)

CONTIGUOUS_FORMS(memaccess_store, sve_st1b_zpri, sve_st1b_scaled_zprr, uint8_t, uint8_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1b_h_zpri, sve_st1b_h_scaled_zprr, uint8_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1b_s_zpri, sve_st1b_s_scaled_zprr, uint8_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1b_d_zpri, sve_st1b_d_scaled_zprr, uint8_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1h_zpri, sve_st1h_scaled_zprr, uint16_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1h_s_zpri, sve_st1h_s_scaled_zprr, uint16_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1h_d_zpri, sve_st1h_d_scaled_zprr, uint16_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1w_zpri, sve_st1w_scaled_zprr, uint32_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1w_d_zpri, sve_st1w_d_scaled_zprr, uint32_t, uint64_t)
CONTIGUOUS_FORMS(memaccess_store, sve_st1d_zpri, sve_st1d_scaled_zprr, uint64_t, uint64_t)

CONTIGUOUS_FORMS(memaccess_store, sve_stnt1b_zpri, sve_stnt1b_scaled_zprr, uint8_t, uint8_t)
CONTIGUOUS_FORMS(memaccess_store, sve_stnt1h_zpri, sve_stnt1h_scaled_zprr, uint16_t, uint16_t)
CONTIGUOUS_FORMS(memaccess_store, sve_stnt1w_zpri, sve_stnt1w_scaled_zprr, uint32_t, uint32_t)
CONTIGUOUS_FORMS(memaccess_store, sve_stnt1d_zpri, sve_stnt1d_scaled_zprr, uint64_t, uint64_t)

} // namespace ZORVO_LENGTH
