// Contiguous loads and stores in every address form and most widths, under
// three predicates, with the registers moved in and out by LDR and STR. The
// only SVE instructions are those of this family, so the program runs under
// zorvo without any other family.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

// Loads and stores run around the middle of their buffers, so that negative
// immediates and indices stay inside them.
static uint8_t source[1024], dest[1024], spilled[48];
static uint8_t pattern[48];

// Predicate images: one bit per register byte.
static const uint8_t predicates[3][6] = {
    {0xff, 0xff, 0xff, 0xff, 0xff, 0xff}, // all active
    {0xff, 0xff, 0xff, 0xff, 0x1f, 0x00}, // a partial last vector: 37 bytes
    {0x35, 0xc1, 0x0f, 0x81, 0x42, 0x99}, // scattered
};

static void show(const char* what, const uint8_t* p, size_t n) {
  printf("%-36s", what);
  for (size_t i = 0; i < n; ++i) printf("%02x", p[i]);
  printf("\n");
}

#define LOAD(insn)                                                                                 \
  do {                                                                                             \
    memset(spilled, 0xee, sizeof spilled);                                                         \
    __asm__ volatile("ldr p1, [%[pred]]\n\tldr z0, [%[pattern]]\n\t" insn "\n\tstr z0, [%[out]]"   \
                     :                                                                             \
                     : [pred] "r"(pred), [pattern] "r"(pattern), [base] "r"(base),                 \
                       [idx] "r"(index), [out] "r"(spilled)                                        \
                     : "z0", "p1", "memory");                                                      \
    show(insn, spilled, sizeof spilled);                                                           \
  } while (0)

#define STORE(insn)                                                                                \
  do {                                                                                             \
    memset(dest, 0xee, sizeof dest);                                                               \
    __asm__ volatile(                                                                              \
        "ldr p1, [%[pred]]\n\tldr z0, [%[pattern]]\n\t" insn                                       \
        :                                                                                          \
        : [pred] "r"(pred), [pattern] "r"(pattern), [dst] "r"(target), [idx] "r"(index)            \
        : "z0", "p1", "memory");                                                                   \
    show(insn, target - 144, 384);                                                                 \
  } while (0)

int main(void) {
  for (unsigned i = 0; i < sizeof source; ++i) source[i] = (uint8_t)(i * 37 + (i >> 3) * 11);
  for (unsigned i = 0; i < sizeof pattern; ++i) pattern[i] = (uint8_t)(0x80 + i * 5);
  const uint8_t* const base = source + 512;
  uint8_t* const target = dest + 512;
  for (int k = 0; k < 3; ++k) {
    const uint8_t* const pred = predicates[k];
    const int64_t index = k == 2 ? -7 : 3;
    printf("predicate %d, index %" PRId64 "\n", k, index);
    LOAD("ld1b {z0.b}, p1/z, [%[base], #1, mul vl]");
    LOAD("ld1b {z0.h}, p1/z, [%[base], %[idx]]");
    LOAD("ld1b {z0.d}, p1/z, [%[base], #7, mul vl]");
    LOAD("ld1sb {z0.s}, p1/z, [%[base], #-1, mul vl]");
    LOAD("ld1sb {z0.d}, p1/z, [%[base], %[idx]]");
    LOAD("ld1h {z0.h}, p1/z, [%[base], %[idx], lsl #1]");
    LOAD("ld1h {z0.s}, p1/z, [%[base], #-8, mul vl]");
    LOAD("ld1sh {z0.d}, p1/z, [%[base], #2, mul vl]");
    LOAD("ld1w {z0.s}, p1/z, [%[base]]");
    LOAD("ld1w {z0.d}, p1/z, [%[base], %[idx], lsl #2]");
    LOAD("ld1sw {z0.d}, p1/z, [%[base], #3, mul vl]");
    LOAD("ld1d {z0.d}, p1/z, [%[base], #-2, mul vl]");
    LOAD("ld1d {z0.d}, p1/z, [%[base], %[idx], lsl #3]");
    LOAD("ldnt1b {z0.b}, p1/z, [%[base], %[idx]]");
    LOAD("ldnt1h {z0.h}, p1/z, [%[base], #1, mul vl]");
    LOAD("ldnt1w {z0.s}, p1/z, [%[base], %[idx], lsl #2]");
    LOAD("ldnt1d {z0.d}, p1/z, [%[base], #-1, mul vl]");
    LOAD("ld1rb {z0.h}, p1/z, [%[base], #63]");
    LOAD("ld1rsb {z0.d}, p1/z, [%[base], #5]");
    LOAD("ld1rh {z0.s}, p1/z, [%[base], #126]");
    LOAD("ld1rsw {z0.d}, p1/z, [%[base], #8]");
    LOAD("ld1rd {z0.d}, p1/z, [%[base], #504]");
    LOAD("ldr z0, [%[base], #-3, mul vl]");
    STORE("st1b {z0.b}, p1, [%[dst], #-1, mul vl]");
    STORE("st1b {z0.s}, p1, [%[dst], %[idx]]");
    STORE("st1h {z0.h}, p1, [%[dst], %[idx], lsl #1]");
    STORE("st1h {z0.d}, p1, [%[dst], #-1, mul vl]");
    STORE("st1w {z0.s}, p1, [%[dst]]");
    STORE("st1w {z0.d}, p1, [%[dst], %[idx], lsl #2]");
    STORE("st1d {z0.d}, p1, [%[dst], %[idx], lsl #3]");
    STORE("stnt1b {z0.b}, p1, [%[dst], %[idx]]");
    STORE("stnt1w {z0.s}, p1, [%[dst], #1, mul vl]");
    STORE("str z0, [%[dst], #1, mul vl]");
    STORE("str p1, [%[dst], #-5, mul vl]");
  }

  // The stack pointer as base: a vector stored below the frame, partly
  // overwritten and read back.
  uint8_t round_trip[96];
  __asm__ volatile(
      "ldr p1, [%[pred]]\n\t"
      "ldr z0, [%[pattern]]\n\t"
      "ldr z3, [%[fill]]\n\t"
      "sub sp, sp, #112\n\t"
      "str z3, [sp]\n\t"
      "st1b {z0.b}, p1, [sp]\n\t"
      "str z0, [sp, #1, mul vl]\n\t"
      "ld1w {z1.s}, p1/z, [sp]\n\t"
      "ldr z2, [sp, #1, mul vl]\n\t"
      "add sp, sp, #112\n\t"
      "str z1, [%[out]]\n\t"
      "str z2, [%[out], #1, mul vl]"
      :
      : [pred] "r"(predicates[2]), [pattern] "r"(pattern), [fill] "r"(source), [out] "r"(round_trip)
      : "z0", "z1", "z2", "z3", "p1", "memory");
  show("sp as base", round_trip, sizeof round_trip);
  return 0;
}
