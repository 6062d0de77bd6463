// FPCR written between SVE instructions, by msr and by fesetround: each
// write takes effect on the host's own floating point and survives the SVE
// instructions around it, and X0, which the runtime borrows at the start of
// each block, keeps the application's value.
#include <fenv.h>
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>

static const uint64_t kModes[] = {0x0, 0x400000, 0x800000, 0xc00000, 0x1000000 | 0xc00000};

int main(void) {
  for (unsigned i = 0; i < sizeof kModes / sizeof kModes[0]; ++i) {
    uint64_t fpcr_after, x0_after;
    float q;
    __asm__ volatile("add z0.s, z1.s, z2.s\n\t"
                     "msr fpcr, %[mode]\n\t"
                     "mov x0, #0x1234\n\t"
                     "add z3.s, z3.s, #1\n\t"
                     "sub z4.d, z5.d, z6.d\n\t"
                     "fdiv %s[q], %s[one], %s[three]\n\t"
                     "mov %[x0], x0\n\t"
                     "mrs %[fpcr], fpcr\n\t"
                     "msr fpcr, xzr"
                     : [fpcr] "=&r"(fpcr_after), [x0] "=&r"(x0_after), [q] "=&w"(q)
                     : [mode] "r"(kModes[i]), [one] "w"(1.0f), [three] "w"(3.0f)
                     : "x0", "v0", "v3", "v4", "memory");
    uint32_t bits;
    __builtin_memcpy(&bits, &q, 4);
    printf("mode %08" PRIx64 ": fpcr %08" PRIx64 " x0 %" PRIx64 " 1/3 = %08" PRIx32 "\n", kModes[i],
           fpcr_after, x0_after, bits);
  }

  // A rounding mode set by the C library, which the runtime never sees.
  const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
  for (unsigned i = 0; i < 4; ++i) {
    fesetround(modes[i]);
    volatile float one = 1.0f, three = 3.0f;
    uint64_t fpcr;
    __asm__ volatile("add z7.h, z7.h, z8.h\n\tmrs %0, fpcr" : "=r"(fpcr) : : "v7", "memory");
    const float q = one / three;
    uint32_t bits;
    __builtin_memcpy(&bits, &q, 4);
    printf("fesetround %d: fpcr %08" PRIx64 " 1/3 = %08" PRIx32 "\n", modes[i], fpcr, bits);
  }
  fesetround(FE_TONEAREST);
  return 0;
}
