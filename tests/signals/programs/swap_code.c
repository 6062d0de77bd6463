/* dlclose a library whose SVE code has run, dlopen another of the same shape
 * (fmla turned into fmls) that lands at the same address, and run it: the
 * new code runs, not the old one's translation. */
#include <dlfcn.h>
#include <stdio.h>

typedef void kernel_fn(float*, const float*, const float*);

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  float b[64], c[64]; /* room for the longest vector */
  for (int i = 0; i < 64; ++i) b[i] = (float)i, c[i] = 2.0f;
  for (int round = 0; round < 4; ++round) {
    const char* path = argv[1 + round % 2];
    void* lib = dlopen(path, RTLD_NOW);
    if (!lib) {
      printf("dlopen: %s\n", dlerror());
      return 1;
    }
    kernel_fn* kernel = (kernel_fn*)dlsym(lib, "kernel");
    float acc[64] = {0};
    kernel(acc, b, c);
    kernel(acc, b, c);
    printf("round %d (%s): %g %g %g\n", round, round % 2 ? "fmls" : "fmla", acc[1], acc[5],
           acc[11]);
    dlclose(lib);
  }
  return 0;
}
