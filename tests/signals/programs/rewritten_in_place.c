/* A program that writes SVE code into a page that is readable, writable and
 * executable, cleans the cache, runs it, rewrites one word past the first
 * (fmla into fmls and back) with a plain store, cleans the cache and runs it
 * again: every run must run the words there now. */
#include <stdio.h>
#include <string.h>
#include <sys/mman.h>

typedef void kernel_fn(float*, const float*, const float*);

enum { kRounds = 40, kOpWord = 4 };
static const unsigned kFmla = 0x65a20020, kFmls = 0x65a22020;
static const unsigned kRoutine[] = {
    0x2598e3e0, /* ptrue p0.s */
    0xa540a000, /* ld1w {z0.s}, p0/z, [x0] */
    0xa540a021, /* ld1w {z1.s}, p0/z, [x1] */
    0xa540a042, /* ld1w {z2.s}, p0/z, [x2] */
    kFmla,      /* fmla z0.s, p0/m, z1.s, z2.s */
    0xe540e000, /* st1w {z0.s}, p0, [x0] */
    0xd65f03c0, /* ret */
};

static float run(unsigned* code) {
  float acc[64] = {0}, b[64], c[64];
  for (int i = 0; i < 64; ++i) b[i] = (float)i, c[i] = 2.0f;
  ((kernel_fn*)(void*)code)(acc, b, c);
  return acc[5];
}

int main(void) {
  unsigned* code = mmap(NULL, 4096, PROT_READ | PROT_WRITE | PROT_EXEC,
                        MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (code == MAP_FAILED) return 1;
  memcpy(code, kRoutine, sizeof kRoutine);
  __builtin___clear_cache((char*)code, (char*)(code + 7));
  int right = 0;
  for (int round = 0; round < kRounds; ++round) {
    const unsigned op = round % 2 ? kFmls : kFmla;
    ((volatile unsigned*)code)[kOpWord] = op;
    __builtin___clear_cache((char*)code, (char*)(code + 7));
    /* Twice each: the second run finds whatever the first one left. */
    const float first = run(code), second = run(code);
    const float want = op == kFmla ? 10.0f : -10.0f;
    right += first == want && second == want;
  }
  printf("%d of %d rounds ran the words written last\n", right, kRounds);
  return 0;
}
