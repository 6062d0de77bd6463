/* Half-precision vector arithmetic with partial predicates, and the single
 * and double forms that run in software, printed bit for bit with the
 * exception flags they raise, in each rounding mode. */
#include <arm_sve.h>
#include <fenv.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#define MAX_LANES 128

static float16_t ha[MAX_LANES], hb[MAX_LANES], hc[MAX_LANES];
static float sa[MAX_LANES], sb[MAX_LANES];
static double da[MAX_LANES], db[MAX_LANES];

static void fill(void) {
  /* Ordinary values, halfway cases, a subnormal, large values near
   * overflow, zeros of both signs, an infinity and a quiet NaN. */
  static const float specials[] = {1.0f / 3, -2.5f, 0.0f, -0.0f, 65504.0f, 6.0e-8f,
                                   1.0e-5f, 3.0e4f, -7.0f, 0.1f, 1.0f / 0.0f, 0.0f / 0.0f};
  for (int i = 0; i < MAX_LANES; ++i) {
    float x = specials[i % 12], y = (float)(i % 9) - 3.75f;
    ha[i] = (float16_t)x;
    hb[i] = (float16_t)y;
    hc[i] = (float16_t)(x * 0.5f + 1.0f / (i + 1));
    sa[i] = x * 1.0e3f + (float)i / 7;
    sb[i] = y + 0.3f;
    da[i] = (double)x * 1.0e10 + (double)i / 3;
    db[i] = (double)y - 0.1;
  }
}

static void print_h(const char* what, svfloat16_t v) {
  uint16_t out[MAX_LANES];
  svst1_u16(svptrue_b16(), out, svreinterpret_u16_f16(v));
  printf("%-10s", what);
  for (uint64_t i = 0; i < svcnth(); ++i) printf(" %04x", out[i]);
  printf("\n");
}

static void print_s(const char* what, svfloat32_t v) {
  uint32_t out[MAX_LANES];
  svst1_u32(svptrue_b32(), out, svreinterpret_u32_f32(v));
  printf("%-10s", what);
  for (uint64_t i = 0; i < svcntw(); ++i) printf(" %08x", out[i]);
  printf("\n");
}

static void print_d(const char* what, svfloat64_t v) {
  uint64_t out[MAX_LANES];
  svst1_u64(svptrue_b64(), out, svreinterpret_u64_f64(v));
  printf("%-10s", what);
  for (uint64_t i = 0; i < svcntd(); ++i) printf(" %016llx", (unsigned long long)out[i]);
  printf("\n");
}

static void print_bits(const char* what, uint64_t bits) {
  printf("%-10s %016llx\n", what, (unsigned long long)bits);
}
static uint64_t half_bits(float16_t x) {
  uint16_t b;
  memcpy(&b, &x, sizeof b);
  return b;
}
static uint64_t single_bits(float x) {
  uint32_t b;
  memcpy(&b, &x, sizeof b);
  return b;
}
static uint64_t double_bits(double x) {
  uint64_t b;
  memcpy(&b, &x, sizeof b);
  return b;
}

static void flags(const char* after) {
  printf("flags after %s: %s%s%s%s%s\n", after, fetestexcept(FE_INVALID) ? "invalid " : "",
         fetestexcept(FE_DIVBYZERO) ? "divbyzero " : "", fetestexcept(FE_OVERFLOW) ? "overflow " : "",
         fetestexcept(FE_UNDERFLOW) ? "underflow " : "", fetestexcept(FE_INEXACT) ? "inexact" : "");
  feclearexcept(FE_ALL_EXCEPT);
}

__attribute__((noinline)) static void half_precision(void) {
  const svbool_t all = svptrue_b16(), part = svwhilelt_b16_s32(0, 17);
  const svfloat16_t a = svld1_f16(all, ha), b = svld1_f16(all, hb), c = svld1_f16(all, hc);
  print_h("add", svadd_f16_m(part, a, b));
  print_h("sub", svsub_f16_x(all, a, b));
  print_h("mul", svmul_f16_m(part, a, b));
  print_h("fma", svmla_f16_m(part, c, a, b));
  print_h("fnmsb", svnmsb_f16_m(part, a, b, c));
  print_h("mul-lane", svmul_lane_f16(a, b, 5));
  flags("half arithmetic");
  print_h("div", svdiv_f16_m(part, a, b));
  print_h("sqrt", svsqrt_f16_m(a, part, svabs_f16_x(all, c)));
  print_h("max", svmax_f16_m(part, a, b));
  print_h("minnm", svminnm_n_f16_m(part, a, 1.0));
  flags("half divide and minmax");
  const svbool_t greater = svcmpgt_f16(part, a, b), unordered = svcmpuo_f16(all, a, c);
  print_h("cmpgt-sel", svsel_f16(greater, a, b));
  print_h("cmpuo-sel", svsel_f16(unordered, c, b));
  print_bits("cmpge-cnt", svcntp_b16(all, svcmpge_n_f16(all, a, 0.0)));
  flags("half compare");
  print_h("from-s16", svcvt_f16_s16_m(a, part, svreinterpret_s16_f16(b)));
  print_s("to-f32", svcvt_f32_f16_x(svptrue_b32(), a));
  print_h("from-f32", svreinterpret_f16_f32(svreinterpret_f32_f16(svcvt_f16_f32_x(svptrue_b32(), svld1_f32(svptrue_b32(), sa)))));
  print_h("to-s16", svreinterpret_f16_s16(svcvt_s16_f16_z(part, c)));
  print_h("rinti", svrinti_f16_m(a, part, c));
  flags("half convert");
  print_bits("faddv", half_bits(svaddv_f16(part, c)));
  print_bits("fadda", half_bits(svadda_f16(part, (float16_t)0.25f, c)));
  print_bits("fmaxv", half_bits(svmaxv_f16(part, b)));
  print_bits("fminnmv", half_bits(svminnmv_f16(part, a)));
  flags("half reduce");
}

__attribute__((noinline)) static void single_and_double(void) {
  const svbool_t part_s = svwhilelt_b32_s32(0, 9), part_d = svwhilelt_b64_s32(0, 5);
  const svfloat32_t a = svld1_f32(svptrue_b32(), sa), b = svld1_f32(svptrue_b32(), sb);
  const svfloat64_t x = svld1_f64(svptrue_b64(), da), y = svld1_f64(svptrue_b64(), db);
  print_bits("fadda-d", double_bits(svadda_f64(part_d, 1.0e-3, x)));
  print_bits("fadda-s", single_bits(svadda_f32(part_s, 0.1f, a)));
  print_bits("faddv-d", double_bits(svaddv_f64(part_d, x)));
  print_d("div-d", svdiv_f64_m(part_d, x, y));
  print_d("sqrt-d", svsqrt_f64_m(x, part_d, svabs_f64_x(part_d, y)));
  flags("double arithmetic");
  /* Two Newton steps from the estimates. */
  svfloat32_t r = svrecpe_f32(b);
  r = svmul_f32_x(svptrue_b32(), r, svrecps_f32(b, r));
  r = svmul_f32_x(svptrue_b32(), r, svrecps_f32(b, r));
  print_s("recip-s", r);
  svfloat64_t q = svrsqrte_f64(svabs_f64_x(svptrue_b64(), y));
  q = svmul_f64_x(svptrue_b64(), q,
                  svrsqrts_f64(svmul_f64_x(svptrue_b64(), svabs_f64_x(svptrue_b64(), y), q), q));
  print_d("rsqrt-d", q);
  print_s("fexpa-s", svexpa_f32(svreinterpret_u32_f32(a)));
  print_s("fmin-s", svmin_f32_m(part_s, a, b));
  print_s("frintm-s", svrintm_f32_m(a, part_s, b));
  print_s("fcvtzu-s", svreinterpret_f32_u32(svcvt_u32_f32_x(part_s, b)));
  flags("single and double");
}

int main(void) {
  fill();
  static const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
  static const char* const names[] = {"to nearest", "upward", "downward", "towards zero"};
  for (int m = 0; m < 4; ++m) {
    fesetround(modes[m]);
    feclearexcept(FE_ALL_EXCEPT);
    printf("== rounding %s\n", names[m]);
    half_precision();
    single_and_double();
  }
  return 0;
}
