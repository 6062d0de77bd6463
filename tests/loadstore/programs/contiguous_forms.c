// Contiguous loads and stores in every address form and most widths, under
// three predicates, with the registers moved in and out by LDR and STR. The
// only SVE instructions are those of this family, so the program runs under
// zorvo without any other family.
#include <inttypes.h>
#include <stdio.h>
#include <string.h>

// Loads and stores run around the middle of their buffers, so that negative
// immediates and indices stay inside them at any vector length (up to 256
// bytes), whose bytes vl is.
static uint8_t source[8192], dest[8192], spilled[256];
static uint8_t pattern[256];
static unsigned vl;

// Predicate images: one bit per register byte. All active; a partial last
// vector (the first three quarters and one byte); scattered.
static uint8_t predicates[3][32];
static const uint8_t scattered[6] = {0x35, 0xc1, 0x0f, 0x81, 0x42, 0x99};

static void make_predicates(void) {
  for (unsigned i = 0; i < vl; ++i) {
    const int on[3] = {1, i <= vl * 3 / 4, (scattered[i / 8 % 6] >> (i % 8)) & 1};
    for (int k = 0; k < 3; ++k)
      if (on[k]) predicates[k][i / 8] |= (uint8_t)(1u << (i % 8));
  }
}

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
    show(insn, spilled, vl);                                                                       \
  } while (0)

#define STORE(insn)                                                                                \
  do {                                                                                             \
    memset(dest, 0xee, sizeof dest);                                                               \
    __asm__ volatile(                                                                              \
        "ldr p1, [%[pred]]\n\tldr z0, [%[pattern]]\n\t" insn                                       \
        :                                                                                          \
        : [pred] "r"(pred), [pattern] "r"(pattern), [dst] "r"(target), [idx] "r"(index)            \
        : "z0", "p1", "memory");                                                                   \
    show(insn, target - 2 * vl - 64, 5 * vl + 64);                                                 \
  } while (0)

int main(void) {
  uint64_t bytes;
  __asm__ volatile("rdvl %0, #1" : "=r"(bytes));
  vl = (unsigned)bytes;
  make_predicates();
  for (unsigned i = 0; i < sizeof source; ++i) source[i] = (uint8_t)(i * 37 + (i >> 3) * 11);
  for (unsigned i = 0; i < sizeof pattern; ++i) pattern[i] = (uint8_t)(0x80 + i * 5);
  const uint8_t* const base = source + 4096;
  uint8_t* const target = dest + 4096;
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
  uint8_t round_trip[512];
  __asm__ volatile(
      "ldr p1, [%[pred]]\n\t"
      "ldr z0, [%[pattern]]\n\t"
      "ldr z3, [%[fill]]\n\t"
      "addvl sp, sp, #-2\n\t"
      "str z3, [sp]\n\t"
      "st1b {z0.b}, p1, [sp]\n\t"
      "str z0, [sp, #1, mul vl]\n\t"
      "ld1w {z1.s}, p1/z, [sp]\n\t"
      "ldr z2, [sp, #1, mul vl]\n\t"
      "addvl sp, sp, #2\n\t"
      "str z1, [%[out]]\n\t"
      "str z2, [%[out], #1, mul vl]"
      :
      : [pred] "r"(predicates[2]), [pattern] "r"(pattern), [fill] "r"(source), [out] "r"(round_trip)
      : "z0", "z1", "z2", "z3", "p1", "memory");
  show("sp as base", round_trip, 2 * vl);
  return 0;
}
