// The fast handlers that compute with the host's floating point. Their
// decoders put the application's FPSR on the host before the call and take
// the cumulative exception flags back after it, so that status is kept as
// if the instruction had run natively. Handlers that only move sign bits
// (fabs, fneg) or constants (fdup) raise nothing and are not listed.
#pragma once

#include <cstdint>

#include "../handlers/handlers.h"

template <auto Handler> inline constexpr bool exchanges_fpsr = false;

#define HOST_FP_HANDLER(h) template <> inline constexpr bool exchanges_fpsr<&h> = true;
HOST_FP_HANDLER(sve_fadd_zpi)
HOST_FP_HANDLER(sve_fadd_zpz)
HOST_FP_HANDLER(sve_fadd_zzz)
HOST_FP_HANDLER(sve_fcmeq_ppz)
HOST_FP_HANDLER(sve_fcmeq_ppzz)
HOST_FP_HANDLER(sve_fcmge_ppz)
HOST_FP_HANDLER(sve_fcmge_ppzz)
HOST_FP_HANDLER(sve_fcmgt_ppz)
HOST_FP_HANDLER(sve_fcmgt_ppzz)
HOST_FP_HANDLER(sve_fcmla_zpzzr)
HOST_FP_HANDLER(sve_fcmle_ppz)
HOST_FP_HANDLER(sve_fcmlt_ppz)
HOST_FP_HANDLER(sve_fcmne_ppzz)
HOST_FP_HANDLER(sve_fcmuo_ppzz)
HOST_FP_HANDLER(sve_fcvt_d2s_zpz)
HOST_FP_HANDLER(sve_fcvt_s2d_zpz)
HOST_FP_HANDLER(sve_fcvtzs_d2d_zpz)
HOST_FP_HANDLER(sve_fcvtzs_d2s_zpz)
HOST_FP_HANDLER(sve_fcvtzs_s2d_zpz)
HOST_FP_HANDLER(sve_fcvtzs_s2s_zpz)
HOST_FP_HANDLER(sve_fcvtzu_d2d_zpz)
HOST_FP_HANDLER(sve_fcvtzu_d2s_zpz)
HOST_FP_HANDLER(sve_fdiv_zpz)
HOST_FP_HANDLER(sve_fdivr_zpz)
HOST_FP_HANDLER(sve_fmad_zpzz)
HOST_FP_HANDLER(sve_fmax_zpz)
HOST_FP_HANDLER(sve_fmaxnm_zpz)
HOST_FP_HANDLER(sve_fmaxnmv_vpz)
HOST_FP_HANDLER(sve_fminnm_zpz)
HOST_FP_HANDLER(sve_fminnmv_vpz)
HOST_FP_HANDLER(sve_fmla_zpzz)
HOST_FP_HANDLER(sve_fmls_zpzz)
HOST_FP_HANDLER(sve_fmsb_zpzz)
HOST_FP_HANDLER(sve_fmul_zpi)
HOST_FP_HANDLER(sve_fmul_zpz)
HOST_FP_HANDLER(sve_fmul_zzz)
HOST_FP_HANDLER(sve_fnmad_zpzz)
HOST_FP_HANDLER(sve_fnmla_zpzz)
HOST_FP_HANDLER(sve_fnmls_zpzz)
HOST_FP_HANDLER(sve_fnmsb_zpzz)
HOST_FP_HANDLER(sve_frecpe_zz)
HOST_FP_HANDLER(sve_frecps_zzz)
HOST_FP_HANDLER(sve_frinta_zpz)
HOST_FP_HANDLER(sve_fsqrt_zpz)
HOST_FP_HANDLER(sve_fsub_zpi)
HOST_FP_HANDLER(sve_fsub_zpz)
HOST_FP_HANDLER(sve_fsub_zzz)
HOST_FP_HANDLER(sve_fsubr_zpi)
HOST_FP_HANDLER(sve_fsubr_zpz)
HOST_FP_HANDLER(sve_scvtf_d2d_zpz)
HOST_FP_HANDLER(sve_scvtf_d2s_zpz)
HOST_FP_HANDLER(sve_scvtf_s2d_zpz)
HOST_FP_HANDLER(sve_scvtf_s2s_zpz)
HOST_FP_HANDLER(sve_ucvtf_d2d_zpz)
HOST_FP_HANDLER(sve_ucvtf_s2d_zpz)
HOST_FP_HANDLER(sve_ucvtf_s2s_zpz)
#undef HOST_FP_HANDLER

inline uint32_t read_host_fpsr() {
  uint64_t value;
  asm volatile("mrs %0, fpsr" : "=r"(value) : : "memory");
  return static_cast<uint32_t>(value);
}
inline void write_host_fpsr(uint32_t value) {
  asm volatile("msr fpsr, %0" : : "r"(uint64_t{value}) : "memory");
}
