// ACLE intrinsics that compile to SVE add and subtract instructions only,
// with the data moved in and out through NEON loads and stores of the low
// 128 bits.
#include <arm_sve.h>
#include <inttypes.h>
#include <stdio.h>

#define LOAD(type, p)                                                                              \
  ({                                                                                               \
    type v_;                                                                                       \
    __asm__ volatile("ldr %q0, [%1]" : "=w"(v_) : "r"(p) : "memory");                              \
    v_;                                                                                            \
  })
#define STORE(p, v) __asm__ volatile("str %q1, [%0]" : : "r"(p), "w"(v) : "memory")

static int8_t b8[16] = {0, 1, 2, 3, 126, 127, -128, -127, -2, -1, 10, 20, 30, 40, 50, 60};
static int8_t b8_other[16] = {5, -5, 100, -100, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
static int16_t h16[8] = {0, 1, -1, 32767, -32768, 1000, -1000, 12345};
static int16_t h16_other[8] = {7, 7, 7, 7, -7, -7, -7, -7};
static int32_t s32[4] = {0, -1, 2147483647, -2147483647 - 1};
static int32_t s32_other[4] = {1, 1, 1, 1};
static uint64_t d64[2] = {0xffffffffffffffffull, 0x123456789abcdef0ull};
static uint64_t d64_other[2] = {1, 0xf0f0f0f0f0f0f0f0ull};

int main(void) {
  int8_t rb[16];
  int16_t rh[8];
  int32_t rs[4];
  uint64_t rd[2];

  // Each source dies where it is overwritten, so every operation can work in
  // place: the destructive forms need no register copy.
  svint8_t vb = svsub_n_s8_x(svptrue_b8(), LOAD(svint8_t, b8), 3);
  STORE(rb, svadd_s8_x(svptrue_b8(), vb, LOAD(svint8_t, b8_other)));
  for (int i = 0; i < 16; ++i) printf("%d ", rb[i]);
  printf("\n");

  svint16_t vh = svadd_n_s16_x(svptrue_b16(), LOAD(svint16_t, h16), 0x200);
  STORE(rh, svsub_s16_x(svptrue_b16(), vh, LOAD(svint16_t, h16_other)));
  for (int i = 0; i < 8; ++i) printf("%d ", rh[i]);
  printf("\n");

  svint32_t vs = svadd_s32_x(svptrue_b32(), LOAD(svint32_t, s32), LOAD(svint32_t, s32_other));
  STORE(rs, svsub_n_s32_x(svptrue_b32(), vs, 7));
  for (int i = 0; i < 4; ++i) printf("%" PRId32 " ", rs[i]);
  printf("\n");

  svuint64_t vd = svsub_u64_x(svptrue_b64(), LOAD(svuint64_t, d64), LOAD(svuint64_t, d64_other));
  STORE(rd, svadd_n_u64_x(svptrue_b64(), vd, 255));
  for (int i = 0; i < 2; ++i) printf("%016" PRIx64 " ", rd[i]);
  printf("\n");
  return 0;
}
