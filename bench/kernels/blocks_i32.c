/* Many short blocks, each met once per call: 64 blocks of four SVE words,
 * kept apart by a nop. With nothing else of SVE in the program, the whole
 * run less start-up and steady state is what translating 256 words costs. */
#include <arm_sve.h>
#include <stdint.h>

#include "bench_check.h"

#define DEFAULT_REPEAT 20

__attribute__((noinline)) static void blocks(int32_t* out, int repeat) {
  svint32_t acc = svdup_s32(0), one = svdup_s32(1);
  for (int r = 0; r < repeat; ++r)
    __asm__ volatile(".rept 64\n\t"
                     "add %0.s, %0.s, %1.s\n\t"
                     "add %0.s, %0.s, %1.s\n\t"
                     "sub %0.s, %0.s, %1.s\n\t"
                     "add %0.s, %0.s, %1.s\n\t"
                     "nop\n\t"
                     ".endr"
                     : "+w"(acc)
                     : "w"(one));
  svst1_s32(svptrue_b32(), out, acc);
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  int32_t out[64] = {0};
  blocks(out, repeat);
  const int ok = out[0] == 128 * repeat && out[(int)svcntw() - 1] == 128 * repeat;
  return bench_report("blocks_i32", ok, (double)out[0]);
}
