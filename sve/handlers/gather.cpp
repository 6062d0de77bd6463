// Gather loads LD1 with a vector of addresses or offsets: 32-bit elements
// from bytes, halfwords and words, 64-bit elements from bytes up to
// doublewords. Zero extension in the plain forms, sign extension in the
// LD1S forms.
#include "../state/cpu_state.h"
#include "gather_scatter_access.h"

namespace ZORVO_LENGTH {

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1b_s_zpzi, uint8_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1b_s_uxtw_zpzr, uint8_t, uint32_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1b_s_sxtw_zpzr, uint8_t, uint32_t, sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1sb_s_zpzi, int8_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sb_s_uxtw_zpzr, int8_t, uint32_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sb_s_sxtw_zpzr, int8_t, uint32_t, sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1h_s_zpzi, uint16_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1h_s_uxtw_zpzr, uint16_t, uint32_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1h_s_sxtw_zpzr, uint16_t, uint32_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1h_s_uxtw_scaled_zprz, uint16_t, uint32_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1h_s_sxtw_scaled_zprz, uint16_t, uint32_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1sh_s_zpzi, int16_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sh_s_uxtw_zpzr, int16_t, uint32_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sh_s_sxtw_zpzr, int16_t, uint32_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sh_s_uxtw_scaled_zprz, int16_t, uint32_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sh_s_sxtw_scaled_zprz, int16_t, uint32_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1w_zpzi, uint32_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1w_uxtw_zpzr, uint32_t, uint32_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1w_sxtw_zpzr, uint32_t, uint32_t, sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1w_uxtw_scaled_zprz, uint32_t, uint32_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1w_sxtw_scaled_zprz, uint32_t, uint32_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1b_d_zpzi, uint8_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1b_d_zpzr, uint8_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1b_d_uxtw_zpzr, uint8_t, uint64_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1b_d_sxtw_zpzr, uint8_t, uint64_t, sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1sb_d_zpzi, int8_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sb_d_zpzr, int8_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sb_d_uxtw_zpzr, int8_t, uint64_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sb_d_sxtw_zpzr, int8_t, uint64_t, sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1h_d_zpzi, uint16_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1h_d_zpzr, uint16_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1h_d_uxtw_zpzr, uint16_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1h_d_sxtw_zpzr, uint16_t, uint64_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1h_d_scaled_zprz, uint16_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1h_d_uxtw_scaled_zprz, uint16_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1h_d_sxtw_scaled_zprz, uint16_t, uint64_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1sh_d_zpzi, int16_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sh_d_zpzr, int16_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sh_d_uxtw_zpzr, int16_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sh_d_sxtw_zpzr, int16_t, uint64_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sh_d_scaled_zprz, int16_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sh_d_uxtw_scaled_zprz, int16_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sh_d_sxtw_scaled_zprz, int16_t, uint64_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1w_d_zpzi, uint32_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1w_d_zpzr, uint32_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1w_d_uxtw_zpzr, uint32_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1w_d_sxtw_zpzr, uint32_t, uint64_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1w_d_scaled_zprz, uint32_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1w_d_uxtw_scaled_zprz, uint32_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1w_d_sxtw_scaled_zprz, uint32_t, uint64_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1sw_d_zpzi, int32_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sw_d_zpzr, int32_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sw_d_uxtw_zpzr, int32_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1sw_d_sxtw_zpzr, int32_t, uint64_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sw_d_scaled_zprz, int32_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sw_d_uxtw_scaled_zprz, int32_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1sw_d_sxtw_scaled_zprz, int32_t, uint64_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_load, sve_ld1d_zpzi, uint64_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1d_zpzr, uint64_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1d_uxtw_zpzr, uint64_t, uint64_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_load, sve_ld1d_sxtw_zpzr, uint64_t, uint64_t, sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1d_scaled_zprz, uint64_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1d_uxtw_scaled_zprz, uint64_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_load, sve_ld1d_sxtw_scaled_zprz, uint64_t, uint64_t,
                               sign_extended_word)

} // namespace ZORVO_LENGTH
