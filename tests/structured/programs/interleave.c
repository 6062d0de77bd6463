/* Interleaved data through structured loads and stores: RGB and RGBA
 * pixels, complex doubles, pairs of words. The lengths are odd, so the last
 * vector of each loop runs under a partial predicate. Prints every result. */
#include <arm_sve.h>
#include <stdint.h>
#include <stdio.h>

#define RGB_PIXELS 101
#define RGBA_PIXELS 29
#define COMPLEX_COUNT 13
#define PAIR_COUNT 23

static uint8_t rgb[3 * RGB_PIXELS], bgr[3 * RGB_PIXELS + 8];
static uint8_t red[RGB_PIXELS], green[RGB_PIXELS], blue[RGB_PIXELS];
static uint16_t rgba[4 * RGBA_PIXELS], argb[4 * RGBA_PIXELS + 8];
static double complex_in[2 * COMPLEX_COUNT], complex_out[2 * COMPLEX_COUNT + 2];
static int32_t pairs[2 * PAIR_COUNT], swapped[2 * PAIR_COUNT + 2], sums[PAIR_COUNT];
/* Structures of four doublewords from index 24 on, with room around them
 * for the vector-multiple offsets. */
static uint64_t quads[24 + 4 * 7 + 24], quads_out[24 + 4 * 7 + 24];

/* RGB to BGR, and the three planes of the image brightened by one. */
static void split_and_swap(void) {
  for (uint64_t i = 0; i < RGB_PIXELS; i += svcntb()) {
    const svbool_t pg = svwhilelt_b8_u64(i, RGB_PIXELS);
    const svuint8x3_t px = svld3_u8(pg, rgb + 3 * i);
    svst3_u8(pg, bgr + 3 * i, svcreate3_u8(svget3_u8(px, 2), svget3_u8(px, 1), svget3_u8(px, 0)));
    svst1_u8(pg, red + i, svadd_n_u8_x(pg, svget3_u8(px, 0), 1));
    svst1_u8(pg, green + i, svadd_n_u8_x(pg, svget3_u8(px, 1), 1));
    svst1_u8(pg, blue + i, svadd_n_u8_x(pg, svget3_u8(px, 2), 1));
  }
}

/* RGBA to ARGB, four 16-bit channels. */
static void rotate_channels(void) {
  for (uint64_t i = 0; i < RGBA_PIXELS; i += svcnth()) {
    const svbool_t pg = svwhilelt_b16_u64(i, RGBA_PIXELS);
    const svuint16x4_t px = svld4_u16(pg, rgba + 4 * i);
    svst4_u16(
        pg, argb + 4 * i,
        svcreate4_u16(svget4_u16(px, 3), svget4_u16(px, 0), svget4_u16(px, 1), svget4_u16(px, 2)));
  }
}

/* Each complex number times i: (re, im) becomes (-im, re). */
static void times_i(void) {
  for (uint64_t i = 0; i < COMPLEX_COUNT; i += svcntd()) {
    const svbool_t pg = svwhilelt_b64_u64(i, COMPLEX_COUNT);
    const svfloat64x2_t z = svld2_f64(pg, complex_in + 2 * i);
    svst2_f64(pg, complex_out + 2 * i,
              svcreate2_f64(svneg_f64_x(pg, svget2_f64(z, 1)), svget2_f64(z, 0)));
  }
}

/* Word pairs swapped and summed. */
static void pair_up(void) {
  for (uint64_t i = 0; i < PAIR_COUNT; i += svcntw()) {
    const svbool_t pg = svwhilelt_b32_u64(i, PAIR_COUNT);
    const svint32x2_t p = svld2_s32(pg, pairs + 2 * i);
    svst2_s32(pg, swapped + 2 * i, svcreate2_s32(svget2_s32(p, 1), svget2_s32(p, 0)));
    svst1_s32(pg, sums + i, svadd_s32_x(pg, svget2_s32(p, 0), svget2_s32(p, 1)));
  }
}

/* The immediate forms: six structures of four doublewords reached as vnum
 * 4 (one list of four vectors up), their components rotated; then the
 * seventh structure's first three components as vnum -3 from three vectors
 * above it, under a one-element predicate. */
static void quads_by_immediate(void) {
  const svuint64x4_t q = svld4_vnum_u64(svptrue_b64(), quads, 4);
  svst4_vnum_u64(
      svptrue_b64(), quads_out, 4,
      svcreate4_u64(svget4_u64(q, 1), svget4_u64(q, 2), svget4_u64(q, 3), svget4_u64(q, 0)));
  const svbool_t one = svwhilelt_b64_u64(0, 1);
  const uint64_t *above = quads + 48 + 3 * svcntd(), *above_out = quads_out + 48 + 3 * svcntd();
  /* Hidden from the compiler, which would otherwise fold the offset away. */
  __asm__("" : "+r"(above), "+r"(above_out));
  const svuint64x3_t r = svld3_vnum_u64(one, above, -3);
  svst3_vnum_u64(one, (uint64_t*)above_out, -3, r);
}

static void print_bytes(const char* name, const uint8_t* v, unsigned n) {
  printf("%s:", name);
  for (unsigned i = 0; i < n; ++i) printf(" %02x", v[i]);
  printf("\n");
}

int main(void) {
  for (unsigned i = 0; i < sizeof rgb; ++i) rgb[i] = (uint8_t)(i * 7 + 3);
  for (unsigned i = 0; i < sizeof bgr; ++i) bgr[i] = 0xee;
  for (unsigned i = 0; i < 4 * RGBA_PIXELS; ++i) rgba[i] = (uint16_t)(i * 1031);
  for (unsigned i = 0; i < sizeof argb / 2; ++i) argb[i] = 0xeeee;
  for (unsigned i = 0; i < 2 * COMPLEX_COUNT; ++i) complex_in[i] = (i % 3 ? 1.5 : -0.25) * i;
  for (unsigned i = 0; i < 2 * COMPLEX_COUNT + 2; ++i) complex_out[i] = 99.0;
  for (unsigned i = 0; i < 2 * PAIR_COUNT; ++i) pairs[i] = (int32_t)(i * 100003) - 1000000;
  for (unsigned i = 0; i < 2 * PAIR_COUNT + 2; ++i) swapped[i] = -1;
  for (unsigned i = 0; i < 4 * 7; ++i)
    quads[24 + i] = 0x0101010101010101ull * i + ((uint64_t)i << 59);
  for (unsigned i = 0; i < sizeof quads_out / 8; ++i) quads_out[i] = ~0ull;

  split_and_swap();
  rotate_channels();
  times_i();
  pair_up();
  quads_by_immediate();

  print_bytes("bgr", bgr, sizeof bgr);
  print_bytes("red", red, RGB_PIXELS);
  print_bytes("green", green, RGB_PIXELS);
  print_bytes("blue", blue, RGB_PIXELS);
  printf("argb:");
  for (unsigned i = 0; i < sizeof argb / 2; ++i) printf(" %04x", argb[i]);
  printf("\ncomplex:");
  for (unsigned i = 0; i < 2 * COMPLEX_COUNT + 2; ++i) printf(" %g", complex_out[i]);
  printf("\nswapped:");
  for (unsigned i = 0; i < 2 * PAIR_COUNT + 2; ++i) printf(" %d", swapped[i]);
  printf("\nsums:");
  for (unsigned i = 0; i < PAIR_COUNT; ++i) printf(" %d", sums[i]);
  printf("\nquads:");
  for (unsigned i = 20; i < 24 + 4 * 7 + 4; ++i) printf(" %llx", (unsigned long long)quads_out[i]);
  printf("\n");
  return 0;
}
