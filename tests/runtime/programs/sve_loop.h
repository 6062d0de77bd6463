// The SVE loop the thread programs run: a block of three SVE words, X9 times,
// on Z0 (from acc) and Z1 (from step). The nop keeps the loop's branch out of
// the block, so that every iteration enters the fragment by branch.
#pragma once

#define SVE_LOOP_ON_Z0_Z1                                                                          \
  "ldr q0, [%[acc]]\n\t"                                                                           \
  "ldr q1, [%[step]]\n\t"                                                                          \
  "mov x9, %[rounds]\n"                                                                            \
  "1:\n\t"                                                                                         \
  "add z0.s, z0.s, z1.s\n\t"                                                                       \
  "add z0.s, z0.s, #2\n\t"                                                                         \
  "sub z0.s, z0.s, #1\n\t"                                                                         \
  "subs x9, x9, #1\n\t"                                                                            \
  "nop\n\t"                                                                                        \
  "b.ne 1b\n\t"                                                                                    \
  "str q0, [%[acc]]\n\t"
