// Vectorised loops written with ACLE intrinsics: while-governed loads, adds
// and stores, reductions, last-active lanes, breaks and predicate logic, at
// several element types and loop lengths. Prints what it computed.
#include <arm_sve.h>
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

#define MAX_LEN 1000

static const int kLengths[] = {0, 1, 5, 6, 7, 11, 12, 13, 23, 24, 25, 47, 48, 49, 100, 257, 1000};
#define NUM_LENGTHS (int)(sizeof kLengths / sizeof kLengths[0])

// Strides are the true lanes of an all-true predicate (ptrue, cntp) rather
// than cntb..cntd, which the emulator carries out on its generic tier: these
// loops stay on fast handlers.
#define LANES(bits) svcntp_b##bits(svptrue_b##bits(), svptrue_b##bits())

static uint8_t a8[MAX_LEN], b8[MAX_LEN], c8[MAX_LEN];
static int16_t a16[MAX_LEN], b16[MAX_LEN], c16[MAX_LEN];
static uint32_t a32[MAX_LEN], b32[MAX_LEN], c32[MAX_LEN];
static int64_t a64[MAX_LEN], b64[MAX_LEN], c64[MAX_LEN];

static void fill(void) {
  uint64_t x = 0x9e3779b97f4a7c15ull;
  for (int i = 0; i < MAX_LEN; ++i) {
    x ^= x << 13, x ^= x >> 7, x ^= x << 17;
    a8[i] = (uint8_t)x, b8[i] = (uint8_t)(x >> 8);
    a16[i] = (int16_t)(x >> 16), b16[i] = (int16_t)(x >> 32);
    a32[i] = (uint32_t)(x >> 3), b32[i] = (uint32_t)(x >> 29);
    a64[i] = (int64_t)x, b64[i] = (int64_t)(x * 3);
  }
}

// Bytes: signed-index whilelt, unsigned sum and maximum, bitwise reductions.
static void bytes(int n) {
  uint64_t sum = 0;
  uint8_t max = 0, and_all = 0xff, or_all = 0, eor_all = 0;
  for (int i = 0; i < n; i += LANES(8)) {
    svbool_t pg = svwhilelt_b8(i, n);
    svuint8_t s = svadd_x(pg, svld1(pg, a8 + i), svld1(pg, b8 + i));
    svst1(pg, c8 + i, s);
    sum += svaddv(pg, s);
    uint8_t m = svmaxv(pg, s);
    max = m > max ? m : max;
    and_all &= svandv(pg, s);
    or_all |= svorv(pg, s);
    eor_all ^= sveorv(pg, s);
  }
  uint64_t check = 0;
  for (int i = 0; i < n; ++i) check = check * 31 + c8[i];
  printf("u8  n=%4d sum=%" PRIu64 " max=%u and=%02x or=%02x eor=%02x check=%016" PRIx64 "\n", n,
         sum, max, and_all, or_all, eor_all, check);
}

// Halfwords: unsigned 64-bit whilelo, signed minimum and maximum, the last
// active lane and a break at the first sum below -30000.
static void halfwords(int n) {
  int16_t smin = INT16_MAX, smax = INT16_MIN, last = 0;
  int first_negative = -1;
  for (uint64_t i = 0; i < (uint64_t)n; i += LANES(16)) {
    svbool_t pg = svwhilelt_b16_u64(i, (uint64_t)n);
    svint16_t s = svadd_x(pg, svld1(pg, a16 + i), svld1(pg, b16 + i));
    svst1(pg, c16 + i, s);
    int16_t lo = svminv(pg, s), hi = svmaxv(pg, s);
    smin = lo < smin ? lo : smin;
    smax = hi > smax ? hi : smax;
    last = svlastb(pg, s);
    svbool_t negative = svcmplt_n_s16(pg, s, -30000);
    if (first_negative < 0 && svptest_any(pg, negative))
      first_negative = (int)(i + svcntp_b16(pg, svbrkb_z(pg, negative)));
  }
  printf("s16 n=%4d min=%d max=%d last=%d first_negative=%d\n", n, smin, smax, last,
         first_negative);
}

// Words: 32-bit whilelo, the uaddv sum, the unsigned minimum, clastb on a
// general register and counts of predicates combined with logic.
static void words(int n) {
  uint64_t sum = 0, count_odd = 0, count_both = 0, count_either = 0, mix = 0;
  uint32_t umin = UINT32_MAX, last_odd = 0;
  for (uint32_t i = 0; i < (uint32_t)n; i += LANES(32)) {
    svbool_t pg = svwhilelt_b32_u32(i, (uint32_t)n);
    svuint32_t s = svadd_x(pg, svld1(pg, a32 + i), svld1(pg, b32 + i));
    svst1(pg, c32 + i, s);
    sum += svaddv(pg, s);
    uint32_t m = svminv(pg, s);
    umin = m < umin ? m : umin;
    svbool_t odd = svcmpne_n_u32(pg, svand_n_u32_x(pg, s, 1), 0);
    svbool_t big = svcmpgt_n_u32(pg, s, 0x80000000u);
    count_odd += svcntp_b32(pg, odd);
    count_both += svcntp_b32(pg, svand_b_z(pg, odd, big));
    count_either += svcntp_b32(pg, svorr_b_z(pg, odd, big));
    count_either += svcntp_b32(pg, sveor_b_z(pg, odd, big));
    count_either += svcntp_b32(pg, svbic_b_z(pg, odd, big));
    count_either += svcntp_b32(pg, svnor_b_z(pg, odd, big));
    count_either += svcntp_b32(pg, svsel_b(odd, pg, big));
    last_odd = svclastb_n_u32(odd, last_odd, s);
    mix = mix * 3 + last_odd; // keeps last_odd in a general register: clastb wN
  }
  printf("u32 n=%4d sum=%" PRIu64 " min=%u odd=%" PRIu64 " both=%" PRIu64 " either=%" PRIu64
         " last_odd=%u mix=%" PRIu64 "\n",
         n, sum, umin, count_odd, count_both, count_either, last_odd, mix);
}

// Doublewords: signed whilelt on 64-bit indices, brka, pnext walking the
// active lanes one at a time, and ptrue patterns.
static void doublewords(int n) {
  int64_t total = 0, walked = 0;
  uint64_t broken = 0;
  for (int64_t i = 0; i < n; i += LANES(64)) {
    svbool_t pg = svwhilelt_b64_s64(i, (int64_t)n);
    svint64_t s = svadd_x(pg, svld1(pg, a64 + i), svld1(pg, b64 + i));
    svst1(pg, c64 + i, s);
    total += svaddv(pg, s);
    broken += svcntp_b64(pg, svbrka_z(pg, svcmpgt_n_s64(pg, s, 0)));
    for (svbool_t lane = svpnext_b64(pg, svpfalse()); svptest_any(pg, lane);
         lane = svpnext_b64(pg, lane))
      walked += svlastb(lane, s) >> 40;
  }
  printf("s64 n=%4d total=%" PRId64 " walked=%" PRId64 " broken=%" PRIu64 " vl3=%" PRIu64
         " pow2=%" PRIu64 " mul3=%" PRIu64 "\n",
         n, total, walked, broken, svcntp_b64(svptrue_b64(), svptrue_pat_b64(SV_VL3)),
         svcntp_b64(svptrue_b64(), svptrue_pat_b64(SV_POW2)),
         svcntp_b64(svptrue_b64(), svptrue_pat_b64(SV_MUL3)));
}

int main(void) {
  fill();
  for (int k = 0; k < NUM_LENGTHS; ++k) {
    bytes(kLengths[k]);
    halfwords(kLengths[k]);
    words(kLengths[k]);
    doublewords(kLengths[k]);
  }
  return 0;
}
