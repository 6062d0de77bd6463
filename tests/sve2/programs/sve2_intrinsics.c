// SVE2, crypto, matrix and BF16 intrinsics on pseudo-random data: each result is
// printed as its first elements and a hash of all its bytes, so any
// difference in any lane shows.
#include <arm_sve.h>
#include <stdint.h>
#include <stdio.h>
#include <sys/auxv.h>

static uint8_t in_a[256], in_b[256], in_c[256];
static uint8_t out[256];

static void fill(void) {
  uint32_t x = 12345;
  for (int i = 0; i < 256; ++i) {
    x = x * 1103515245u + 12345u;
    in_a[i] = (uint8_t)(x >> 16);
    x = x * 1103515245u + 12345u;
    in_b[i] = (uint8_t)(x >> 16);
    x = x * 1103515245u + 12345u;
    // A few equal bytes, for the match and histogram forms.
    in_c[i] = i % 7 == 0 ? in_a[i] : (uint8_t)(x >> 16);
  }
}

static void show(const char* name) {
  uint32_t h = 2166136261u;
  const int n = (int)svcntb();
  for (int i = 0; i < n; ++i) h = (h ^ out[i]) * 16777619u;
  printf("%-10s %02x%02x%02x%02x %02x%02x%02x%02x hash %08x\n", name, out[0], out[1], out[2],
         out[3], out[4], out[5], out[6], out[7], h);
}

#define ALL svptrue_b8()
#define RESULT(name, expr, kind, store)                                                            \
  do {                                                                                             \
    kind r_ = expr;                                                                                \
    store(svptrue_b8(), (void*)out, r_);                                                           \
    show(name);                                                                                    \
  } while (0)
#define PRED(name, expr)                                                                           \
  do {                                                                                             \
    svbool_t p_ = expr;                                                                            \
    svst1_u8(ALL, out, svdup_n_u8_z(p_, 1));                                                       \
    show(name);                                                                                    \
  } while (0)

int main(void) {
  fill();
  // SVE2, its AES, PMULL, BITPERM, SHA3 and SM4 parts, I8MM, F32MM, F64MM, BF16.
  printf("hwcap2 sve extensions %#lx\n", getauxval(AT_HWCAP2) & 0x1e7eul);
  const svint8_t sa = svld1_s8(ALL, (int8_t*)in_a), sb = svld1_s8(ALL, (int8_t*)in_b);
  const svuint8_t ua = svld1_u8(ALL, in_a), ub = svld1_u8(ALL, in_b), uc = svld1_u8(ALL, in_c);
  const svint16_t ha = svreinterpret_s16_u8(ua), hb = svreinterpret_s16_u8(ub);
  const svuint16_t uha = svreinterpret_u16_u8(ua), uhb = svreinterpret_u16_u8(ub);
  const svint32_t wa = svreinterpret_s32_u8(ua), wb = svreinterpret_s32_u8(ub);
  const svuint32_t uwa = svreinterpret_u32_u8(ua), uwb = svreinterpret_u32_u8(ub);
  const svint64_t da = svreinterpret_s64_u8(ua), db = svreinterpret_s64_u8(ub);
  const svuint64_t uda = svreinterpret_u64_u8(ua), udb = svreinterpret_u64_u8(ub),
                   udc = svreinterpret_u64_u8(uc);
  const svbool_t some = svwhilelt_b8_s32(3, (int32_t)svcntb() - 5);
  const svbool_t some32 = svwhilelt_b32_s32(1, (int32_t)svcntw() - 2);

  // Widening, wide and narrowing.
  RESULT("saddlb", svaddlb_s16(sa, sb), svint16_t, svst1_s16);
  RESULT("saddlt", svaddlt_s16(sa, sb), svint16_t, svst1_s16);
  RESULT("ssublb", svsublb_s32(ha, hb), svint32_t, svst1_s32);
  RESULT("uabdlt", svabdlt_u64(uwa, uwb), svuint64_t, svst1_u64);
  RESULT("umullb", svmullb_u32(uha, uhb), svuint32_t, svst1_u32);
  RESULT("smullt", svmullt_s64(wa, wb), svint64_t, svst1_s64);
  RESULT("smlalb", svmlalb_s32(wa, ha, hb), svint32_t, svst1_s32);
  RESULT("umlslt", svmlslt_u16(uha, ua, ub), svuint16_t, svst1_u16);
  RESULT("sabalb", svabalb_s16(ha, sa, sb), svint16_t, svst1_s16);
  RESULT("saddwb", svaddwb_s64(da, wb), svint64_t, svst1_s64);
  RESULT("usubwt", svsubwt_u32(uwa, uhb), svuint32_t, svst1_u32);
  RESULT("saddlbt", svaddlbt_s16(sa, sb), svint16_t, svst1_s16);
  RESULT("ssubltb", svsubltb_s32(ha, hb), svint32_t, svst1_s32);
  RESULT("addhnb", svaddhnb_s16(ha, hb), svint8_t, svst1_s8);
  RESULT("addhnt", svaddhnt_s16(sa, ha, hb), svint8_t, svst1_s8);
  RESULT("raddhnb", svraddhnb_u32(uwa, uwb), svuint16_t, svst1_u16);
  RESULT("rsubhnt", svrsubhnt_u64(uwa, uda, udb), svuint32_t, svst1_u32);
  RESULT("subhnb", svsubhnb_s64(da, db), svint32_t, svst1_s32);

  // Three-way logic and xar.
  RESULT("eor3", sveor3_u64(uda, udb, udc), svuint64_t, svst1_u64);
  RESULT("bcax", svbcax_u64(uda, udb, udc), svuint64_t, svst1_u64);
  RESULT("bsl", svbsl_u64(uda, udb, udc), svuint64_t, svst1_u64);
  RESULT("bsl1n", svbsl1n_u64(uda, udb, udc), svuint64_t, svst1_u64);
  RESULT("bsl2n", svbsl2n_u64(uda, udb, udc), svuint64_t, svst1_u64);
  RESULT("nbsl", svnbsl_u64(uda, udb, udc), svuint64_t, svst1_u64);
  RESULT("xar.b", svxar_n_u8(ua, ub, 3), svuint8_t, svst1_u8);
  RESULT("xar.s", svxar_n_u32(uwa, uwb, 32), svuint32_t, svst1_u32);
  RESULT("xar.d", svxar_n_u64(uda, udb, 17), svuint64_t, svst1_u64);

  // Pairwise, predicated on a partial predicate.
  RESULT("addp", svaddp_s32_m(svwhilelt_b32_s32(1, 9), wa, wb), svint32_t, svst1_s32);
  RESULT("smaxp", svmaxp_s16_m(svwhilelt_b16_s32(0, 13), ha, hb), svint16_t, svst1_s16);
  RESULT("uminp", svminp_u8_m(some, ua, ub), svuint8_t, svst1_u8);
  RESULT("umaxp", svmaxp_u64_m(svptrue_b64(), uda, udb), svuint64_t, svst1_u64);

  // Doubling multiplies, saturating at the most negative values.
  const svint16_t extremes = svdup_n_s16_m(ha, svcmpeq_n_s16(svptrue_b16(), hb, 0), INT16_MIN);
  RESULT("sqdmulh", svqdmulh_s16(extremes, extremes), svint16_t, svst1_s16);
  RESULT("sqrdmulh", svqrdmulh_s32(wa, wb), svint32_t, svst1_s32);
  RESULT("sqrdmulh8", svqrdmulh_s8(sa, svdup_n_s8(INT8_MIN)), svint8_t, svst1_s8);
  RESULT("sqdmulh64", svqdmulh_s64(da, db), svint64_t, svst1_s64);

  // While counting down, including the wrap below the smallest value.
  PRED("whilege", svwhilege_b32_s32(5, 0));
  PRED("whilegt", svwhilegt_b8_s64(100, 90));
  PRED("whilehi", svwhilegt_b16_u32(7, 2));
  PRED("whilehs", svwhilege_b64_u64(1, 0));
  PRED("whilegemin", svwhilege_b8_s32(INT32_MIN + 2, INT32_MIN));
  // A loop from the top, as a compiler writes a reversed one.
  int64_t total = 0;
  for (int64_t i = 37; svptest_first(ALL, svwhilegt_b32_s64(i, 0)); i -= (int64_t)svcntw()) {
    const svbool_t pg = svwhilegt_b32_s64(i, 0);
    total += svaddv_s32(pg, svindex_s32((int32_t)i, -1));
  }
  printf("reverse loop total %lld\n", (long long)total);

  // Halving, saturating, high-half, accumulating and extracting forms.
  RESULT("shadd", svhadd_s8_m(some, sa, sb), svint8_t, svst1_s8);
  RESULT("urhadd", svrhadd_u16_m(svptrue_b16(), uha, uhb), svuint16_t, svst1_u16);
  RESULT("shsubr", svhsubr_s32_m(svptrue_b32(), wa, wb), svint32_t, svst1_s32);
  RESULT("sqadd", svqadd_s8_m(some, sa, sb), svint8_t, svst1_s8);
  RESULT("uqsub", svqsub_u64_m(svptrue_b64(), uda, udb), svuint64_t, svst1_u64);
  RESULT("suqadd", svuqadd_s16_m(svptrue_b16(), ha, uhb), svint16_t, svst1_s16);
  RESULT("usqadd", svsqadd_u32_m(svptrue_b32(), uwa, wb), svuint32_t, svst1_u32);
  RESULT("sqabs", svqabs_s8_m(sb, some, svdup_n_s8_m(sa, some, INT8_MIN)), svint8_t, svst1_s8);
  RESULT("smulh", svmulh_s64_x(svptrue_b64(), da, db), svint64_t, svst1_s64);
  RESULT("umulh", svmulh_u8_x(ALL, ua, ub), svuint8_t, svst1_u8);
  RESULT("pmul", svpmul_u8(ua, ub), svuint8_t, svst1_u8);
  RESULT("saba", svaba_s16(ha, hb, ha), svint16_t, svst1_s16);
  RESULT("sqrdmlah", svqrdmlah_s32(wa, wb, wa), svint32_t, svst1_s32);
  RESULT("sqrdmlsh.d", svqrdmlsh_s64(da, db, da), svint64_t, svst1_s64);
  RESULT("eorbt", sveorbt_u16(uha, uhb, uha), svuint16_t, svst1_u16);
  RESULT("bext", svbext_u32(uwa, uwb), svuint32_t, svst1_u32);
  RESULT("bdep", svbdep_u64(uda, udb), svuint64_t, svst1_u64);
  RESULT("bgrp", svbgrp_u8(ua, ub), svuint8_t, svst1_u8);
  RESULT("sqxtnb", svqxtnb_s32(wa), svint16_t, svst1_s16);
  RESULT("uqxtnt", svqxtnt_u64(svreinterpret_u32_u8(ub), uda), svuint32_t, svst1_u32);
  RESULT("sqxtunb", svqxtunb_s16(ha), svuint8_t, svst1_u8);
  RESULT("mul[5]", svmul_lane_s16(ha, hb, 5), svint16_t, svst1_s16);
  RESULT("mla[1]", svmla_lane_u64(uda, udb, uda, 1), svuint64_t, svst1_u64);
  RESULT("sqrdmulh[3]", svqrdmulh_lane_s32(wa, wb, 3), svint32_t, svst1_s32);

  // Histograms and matches.
  RESULT("histcnt",
         svhistcnt_u32_z(svwhilelt_b32_s32(0, 7), svand_n_u32_x(ALL, uwa, 3),
                         svand_n_u32_x(ALL, uwb, 3)),
         svuint32_t, svst1_u32);
  RESULT("histcnt.d", svhistcnt_u64_z(svptrue_b64(), svand_n_u64_x(ALL, uda, 1), udb), svuint64_t,
         svst1_u64);
  RESULT("histseg", svhistseg_u8(ua, uc), svuint8_t, svst1_u8);
  PRED("match", svmatch_u8(some, ua, uc));
  PRED("nmatch", svnmatch_u16(svptrue_b16(), uha, svreinterpret_u16_u8(uc)));

  // int8 matrix multiplies and mixed-sign dot products.
  RESULT("smmla", svmmla_s32(wa, sa, sb), svint32_t, svst1_s32);
  RESULT("ummla", svmmla_u32(uwa, ua, ub), svuint32_t, svst1_u32);
  RESULT("usmmla", svusmmla_s32(wa, ua, sb), svint32_t, svst1_s32);
  RESULT("usdot", svusdot_s32(wa, ua, sb), svint32_t, svst1_s32);
  RESULT("usdot[2]", svusdot_lane_s32(wa, ua, sb, 2), svint32_t, svst1_s32);
  RESULT("sudot[1]", svsudot_lane_s32(wa, sa, ub, 1), svint32_t, svst1_s32);

  // Shifts by an immediate.
  RESULT("shrnb", svshrnb_n_u16(uha, 3), svuint8_t, svst1_u8);
  RESULT("shrnt", svshrnt_n_u16(ub, uha, 8), svuint8_t, svst1_u8);
  RESULT("sqrshrnb", svqrshrnb_n_s32(wa, 5), svint16_t, svst1_s16);
  RESULT("sqshrunt", svqshrunt_n_s64(svreinterpret_u32_u8(ub), da, 17), svuint32_t, svst1_u32);
  RESULT("uqrshrnt", svqrshrnt_n_u32(uhb, uwa, 1), svuint16_t, svst1_u16);
  RESULT("srshr", svrshr_n_s16_m(svwhilelt_b16_s32(2, 11), ha, 3), svint16_t, svst1_s16);
  RESULT("urshr.d", svrshr_n_u64_x(svptrue_b64(), uda, 64), svuint64_t, svst1_u64);
  RESULT("sqshl#", svqshl_n_s8_m(some, sa, 3), svint8_t, svst1_s8);
  RESULT("sqshlu", svqshlu_n_s32_m(svptrue_b32(), wa, 7), svuint32_t, svst1_u32);
  RESULT("usra", svsra_n_u64(uda, udb, 9), svuint64_t, svst1_u64);
  RESULT("srsra", svrsra_n_s8(sa, sb, 2), svint8_t, svst1_s8);
  RESULT("sli", svsli_n_u32(uwa, uwb, 5), svuint32_t, svst1_u32);
  RESULT("sri", svsri_n_u16(uha, uhb, 16), svuint16_t, svst1_u16);
  RESULT("sshllb", svshllb_n_s16(sa, 3), svint16_t, svst1_s16);
  RESULT("ushllt", svshllt_n_u64(uwa, 31), svuint64_t, svst1_u64);
  RESULT("sadalp", svadalp_s16_m(svwhilelt_b16_s32(0, 5), ha, sa), svint16_t, svst1_s16);

  // Complex integer forms and the long add with carry.
  RESULT("cadd", svcadd_s8(sa, sb, 90), svint8_t, svst1_s8);
  RESULT("sqcadd", svqcadd_s16(ha, hb, 270), svint16_t, svst1_s16);
  RESULT("cmla", svcmla_s32(wa, wb, wa, 180), svint32_t, svst1_s32);
  RESULT("cmla[2]", svcmla_lane_s16(ha, hb, ha, 2, 90), svint16_t, svst1_s16);
  RESULT("sqrdcmlah", svqrdcmlah_s64(da, db, da, 270), svint64_t, svst1_s64);
  RESULT("cdot", svcdot_s32(wa, sa, sb, 90), svint32_t, svst1_s32);
  RESULT("cdot[1]", svcdot_lane_s64(da, ha, hb, 1, 0), svint64_t, svst1_s64);
  RESULT("adclb", svadclb_u32(uwa, uwb, uwa), svuint32_t, svst1_u32);
  RESULT("sbclt", svsbclt_u64(uda, udb, udc), svuint64_t, svst1_u64);

  // Indexed long multiplies.
  RESULT("smullb[7]", svmullb_lane_s32(ha, hb, 7), svint32_t, svst1_s32);
  RESULT("sqdmlalt[3]", svqdmlalt_lane_s64(da, wa, wb, 3), svint64_t, svst1_s64);
  RESULT("umlslb[5]", svmlslb_lane_u32(uwa, uha, uhb, 5), svuint32_t, svst1_u32);

  // Tables, conflicts, non-temporal gathers and scatters, octaword loads.
  RESULT("tbl2", svtbl2_u16(svcreate2_u16(uha, uhb), svand_n_u16_x(ALL, uhb, 63)), svuint16_t,
         svst1_u16);
  RESULT("tbx", svtbx_u8(ua, ub, svand_n_u8_x(ALL, uc, 127)), svuint8_t, svst1_u8);
  PRED("whilerw", svwhilerw_u8(in_a + 9, in_a));
  PRED("whilewr", svwhilewr_s32((int32_t*)in_a, (int32_t*)in_a + 3));
  const svuint64_t bases = svindex_u64((uint64_t)(uintptr_t)in_c, 24);
  RESULT("ldnt1", svldnt1_gather_u64base_offset_u64(svptrue_b64(), bases, 5), svuint64_t,
         svst1_u64);
  RESULT("ldnt1sh", svldnt1sh_gather_u64base_offset_s64(svptrue_b64(), bases, 3), svint64_t,
         svst1_s64);
  svstnt1b_scatter_u64base_offset_u64(svwhilelt_b64_s32(0, 3), bases, 1, uda);
  RESULT("stnt1b", svld1_u8(ALL, in_c), svuint8_t, svst1_u8);
  RESULT("ld1ro", svld1ro_u16(svwhilelt_b16_s32(1, 14), (uint16_t*)in_b + 3), svuint16_t,
         svst1_u16);

  // Cryptography.
  RESULT("aese", svaese_u8(ua, ub), svuint8_t, svst1_u8);
  RESULT("aesimc", svaesimc_u8(ua), svuint8_t, svst1_u8);
  RESULT("sm4e", svsm4e_u32(uwa, uwb), svuint32_t, svst1_u32);
  RESULT("sm4ekey", svsm4ekey_u32(uwa, uwb), svuint32_t, svst1_u32);
  RESULT("pmullb.q", svpmullb_pair_u64(uda, udb), svuint64_t, svst1_u64);
  RESULT("urecpe", svrecpe_u32_m(uwb, some32, uwa), svuint32_t, svst1_u32);
  RESULT("ursqrte", svrsqrte_u32_x(svptrue_b32(), uwa), svuint32_t, svst1_u32);

  // BF16: the conversions and bfmlal follow FPCR; bfdot and bfmmla do not.
  const svfloat32_t fa = svreinterpret_f32_u8(ua), fb = svreinterpret_f32_u8(ub);
  const svfloat32_t small =
      svmul_n_f32_x(ALL, svcvt_f32_s32_x(ALL, svand_n_s32_x(ALL, wa, 0xffff)), 1.0e-38f / 3.0f);
  const svbfloat16_t ba = svreinterpret_bf16_u8(ua), bb = svreinterpret_bf16_u8(ub);
  const svfloat16_t hfa = svreinterpret_f16_u8(ua), hfb = svreinterpret_f16_u8(ub);
  const svfloat64_t dfa = svreinterpret_f64_u8(ua), dfb = svreinterpret_f64_u8(ub);
  const uint64_t controls[] = {0, 1u << 24 | 1u << 25, 3u << 22, 1u << 22, 2u << 22 | 1u << 24};
  for (int c = 0; c < 5; ++c) {
    uint64_t fpsr = 0;
    __asm__ volatile("msr fpsr, xzr\n msr fpcr, %0" : : "r"(controls[c]));
    RESULT("bfcvt", svcvt_bf16_f32_m(ba, some, fa), svbfloat16_t, svst1_bf16);
    RESULT("bfcvt.tiny", svcvt_bf16_f32_x(ALL, small), svbfloat16_t, svst1_bf16);
    RESULT("bfcvtnt", svcvtnt_bf16_f32_m(bb, svptrue_b32(), fb), svbfloat16_t, svst1_bf16);
    RESULT("bfdot", svbfdot_f32(fa, ba, bb), svfloat32_t, svst1_f32);
    RESULT("bfdot[3]", svbfdot_lane_f32(small, ba, bb, 3), svfloat32_t, svst1_f32);
    RESULT("bfmmla", svbfmmla_f32(fa, ba, bb), svfloat32_t, svst1_f32);
    RESULT("bfmlalb", svbfmlalb_f32(small, ba, bb), svfloat32_t, svst1_f32);
    RESULT("bfmlalt", svbfmlalt_f32(fa, ba, bb), svfloat32_t, svst1_f32);
    RESULT("faddp", svaddp_f32_m(some32, fa, fb), svfloat32_t, svst1_f32);
    RESULT("fmaxnmp", svmaxnmp_f64_m(svptrue_b64(), dfa, dfb), svfloat64_t, svst1_f64);
    RESULT("fminp.h", svminp_f16_m(svptrue_b16(), hfa, hfb), svfloat16_t, svst1_f16);
    RESULT("flogb", svlogb_f32_m(wb, some32, fa), svint32_t, svst1_s32);
    RESULT("fcvtx", svcvtx_f32_f64_x(svptrue_b64(), dfa), svfloat32_t, svst1_f32);
    RESULT("fcvtnt", svcvtnt_f16_f32_m(hfb, svptrue_b32(), fa), svfloat16_t, svst1_f16);
    RESULT("fcvtlt", svcvtlt_f64_f32_m(dfb, svptrue_b64(), fa), svfloat64_t, svst1_f64);
    RESULT("fmlalb", svmlalb_f32(small, hfa, hfb), svfloat32_t, svst1_f32);
    RESULT("fmlslt[6]", svmlslt_lane_f32(fa, hfa, hfb, 6), svfloat32_t, svst1_f32);
    RESULT("bfmlalt[4]", svbfmlalt_lane_f32(fa, ba, bb, 4), svfloat32_t, svst1_f32);
    RESULT("fmmla.s", svmmla_f32(fa, fb, small), svfloat32_t, svst1_f32);
    RESULT("fmmla.d", svmmla_f64(dfa, dfb, dfa), svfloat64_t, svst1_f64);
    __asm__ volatile("mrs %0, fpsr" : "=r"(fpsr));
    printf("controls %08llx flags %02llx\n", (unsigned long long)controls[c],
           (unsigned long long)(fpsr & 0x9f));
  }
  __asm__ volatile("msr fpcr, xzr");
  return 0;
}
