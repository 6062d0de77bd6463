// Sets each rounding mode with fesetround and runs an SVE instruction after
// each: code the runtime never sees changes FPCR between blocks.
#include <fenv.h>

int main(void) {
  const int modes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
  for (int i = 0; i < 4; ++i) {
    fesetround(modes[i]);
    __asm__ volatile("add z0.s, z0.s, z1.s" ::: "v0");
  }
  fesetround(FE_TONEAREST);
  return 0;
}
