/* Ten thousand dlopen/dlclose cycles of two SVE libraries of one shape (fmla,
 * fmls) that take turns at one address: every cycle runs the code loaded
 * now, and resident memory after the first few hundred cycles stays where it
 * was. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

typedef void kernel_fn(float*, const float*, const float*);

enum { kCycles = 10000, kWarmUp = 500 };
/* Translations of ten thousand closed libraries kept alive would take
 * several MiB; what the process settles at may move by a few pages. */
static const long kFlatKiB = 1024;

/* The process's resident pages, mapping by mapping. (VmRSS in
 * /proc/self/status counts the same on a machine that runs the program
 * itself; under an emulator it counts the emulator's own translations too.) */
static long resident_kib(void) {
  static unsigned char in_core[1 << 16];
  const unsigned long page = (unsigned long)sysconf(_SC_PAGESIZE);
  FILE* f = fopen("/proc/self/maps", "r");
  char line[512];
  long pages = 0;
  while (f && fgets(line, sizeof line, f)) {
    unsigned long start, end;
    if (sscanf(line, "%lx-%lx", &start, &end) != 2) continue;
    for (unsigned long at = start; at < end;) {
      unsigned long n = (end - at) / page;
      if (n > sizeof in_core) n = sizeof in_core;
      if (mincore((void*)at, n * page, in_core) != 0) break;
      for (unsigned long i = 0; i < n; ++i) pages += in_core[i] & 1;
      at += n * page;
    }
  }
  if (f) fclose(f);
  return pages * (long)(page / 1024);
}

int main(int argc, char** argv) {
  if (argc < 3) return 2;
  float b[12], c[12];
  for (int i = 0; i < 12; ++i) b[i] = (float)i, c[i] = 2.0f;
  long settled = 0, wrong = 0;
  for (int cycle = 0; cycle < kCycles; ++cycle) {
    void* lib = dlopen(argv[1 + cycle % 2], RTLD_NOW);
    if (!lib) {
      printf("dlopen: %s\n", dlerror());
      return 1;
    }
    kernel_fn* kernel = (kernel_fn*)dlsym(lib, "kernel");
    float acc[12] = {0};
    kernel(acc, b, c);
    /* fmla gives 2 * 5 = 10 at element 5, fmls -10. */
    if (acc[5] != (cycle % 2 ? -10.0f : 10.0f)) ++wrong;
    dlclose(lib);
    if (cycle + 1 == kWarmUp) settled = resident_kib();
  }
  const long growth = resident_kib() - settled;
  printf("%d cycles, %ld ran the wrong library's code\n", kCycles, wrong);
  if (growth < kFlatKiB)
    printf("resident memory flat\n");
  else
    printf("resident memory grew by %ld KiB\n", growth);
  return wrong != 0;
}
