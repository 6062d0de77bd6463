// Scatter stores ST1 with a vector of addresses or offsets: the low bytes of
// each 32-bit or 64-bit element, one store per active element in ascending
// element order, so that of two elements at one address the later one stays.
#include "../state/cpu_state.h"
#include "gather_scatter_access.h"

namespace ZORVO_LENGTH {

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1b_s_zpzi, uint8_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1b_s_uxtw_zpzr, uint8_t, uint32_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1b_s_sxtw_zpzr, uint8_t, uint32_t,
                        sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1h_s_zpzi, uint16_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1h_s_uxtw_zpzr, uint16_t, uint32_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1h_s_sxtw_zpzr, uint16_t, uint32_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1h_s_uxtw_scaled_zprz, uint16_t, uint32_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1h_s_sxtw_scaled_zprz, uint16_t, uint32_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1w_zpzi, uint32_t, uint32_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1w_uxtw_zpzr, uint32_t, uint32_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1w_sxtw_zpzr, uint32_t, uint32_t, sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1w_uxtw_scaled_zprz, uint32_t, uint32_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1w_sxtw_scaled_zprz, uint32_t, uint32_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1b_d_zpzi, uint8_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1b_d_zpzr, uint8_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1b_d_uxtw_zpzr, uint8_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1b_d_sxtw_zpzr, uint8_t, uint64_t,
                        sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1h_d_zpzi, uint16_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1h_d_zpzr, uint16_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1h_d_uxtw_zpzr, uint16_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1h_d_sxtw_zpzr, uint16_t, uint64_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1h_d_scaled_zprz, uint16_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1h_d_uxtw_scaled_zprz, uint16_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1h_d_sxtw_scaled_zprz, uint16_t, uint64_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1w_d_zpzi, uint32_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1w_d_zpzr, uint32_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1w_d_uxtw_zpzr, uint32_t, uint64_t,
                        zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1w_d_sxtw_zpzr, uint32_t, uint64_t,
                        sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1w_d_scaled_zprz, uint32_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1w_d_uxtw_scaled_zprz, uint32_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1w_d_sxtw_scaled_zprz, uint32_t, uint64_t,
                               sign_extended_word)

VECTOR_PLUS_IMM_FORM(memaccess_store, sve_st1d_zpzi, uint64_t, uint64_t)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1d_zpzr, uint64_t, uint64_t, whole)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1d_uxtw_zpzr, uint64_t, uint64_t, zero_extended_word)
SCALAR_PLUS_VECTOR_FORM(memaccess_store, sve_st1d_sxtw_zpzr, uint64_t, uint64_t, sign_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1d_scaled_zprz, uint64_t, uint64_t, whole)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1d_uxtw_scaled_zprz, uint64_t, uint64_t,
                               zero_extended_word)
SCALAR_PLUS_SCALED_VECTOR_FORM(memaccess_store, sve_st1d_sxtw_scaled_zprz, uint64_t, uint64_t,
                               sign_extended_word)

} // namespace ZORVO_LENGTH
