/* Ten thousand dlopen/dlclose cycles of two SVE libraries of one shape (fmla,
 * fmls) that take turns at one address: every cycle runs the code loaded
 * now, and resident memory after the first few hundred cycles stays where it
 * was. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "resident_memory.h"

typedef void kernel_fn(float*, const float*, const float*);

enum { kCycles = 10000, kWarmUp = 500 };

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  float b[64], c[64]; /* room for the longest vector */
  for (int i = 0; i < 64; ++i) b[i] = (float)i, c[i] = 2.0f;
  long settled = 0, wrong = 0;
  for (int cycle = 0; cycle < kCycles; ++cycle) {
    void* lib = dlopen(argv[1 + cycle % 2], RTLD_NOW);
    if (!lib) {
      printf("dlopen: %s\n", dlerror());
      return 1;
    }
    kernel_fn* kernel = (kernel_fn*)dlsym(lib, "kernel");
    float acc[64] = {0};
    kernel(acc, b, c);
    /* fmla gives 2 * 5 = 10 at element 5, fmls -10. */
    if (acc[5] != (cycle % 2 ? -10.0f : 10.0f)) ++wrong;
    dlclose(lib);
    if (cycle + 1 == kWarmUp) settled = resident_kib();
  }
  printf("%d cycles, %ld ran the wrong library's code\n", kCycles, wrong);
  print_growth_since(settled);
  return wrong != 0;
}
