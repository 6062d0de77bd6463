/* String lengths with first-fault loads, written with ACLE intrinsics. The
 * last string ends against an inaccessible page, which only a first-fault
 * load may read up to. */
#include <arm_sve.h>
#include <stdint.h>
#include <sys/mman.h>
#include <unistd.h>

#include "bench_check.h"

#define STRINGS 600
#define DEFAULT_REPEAT 10

__attribute__((noinline)) static size_t sve_strlen(const char* s) {
  const uint8_t* p = (const uint8_t*)s;
  svbool_t all = svptrue_b8();
  size_t n = 0;
  for (;;) {
    svsetffr();
    svuint8_t bytes = svldff1_u8(all, p + n);
    svbool_t loaded = svrdffr_z(all);
    svbool_t nul = svcmpeq_n_u8(loaded, bytes, 0);
    if (svptest_any(loaded, nul)) {
      svbool_t before = svbrkb_z(loaded, nul);
      return n + svcntp_b8(before, before);
    }
    n += svcntp_b8(all, loaded);
  }
}

SCALAR static size_t scalar_strlen(const char* s) {
  size_t n = 0;
  while (s[n]) ++n;
  return n;
}

int main(int argc, char** argv) {
  const int repeat = bench_repeat(argc, argv, DEFAULT_REPEAT);
  size_t page = (size_t)sysconf(_SC_PAGESIZE);
  size_t size = 64 * page;
  char* buffer =
      mmap(NULL, size + page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (buffer == MAP_FAILED || mprotect(buffer + size, page, PROT_NONE) != 0) return 2;
  /* Strings of 0 to 250 characters, packed; the last one fills the buffer. */
  static char* strings[STRINGS + 1];
  char* p = buffer;
  for (int i = 0; i < STRINGS; ++i) {
    strings[i] = p;
    size_t len = (size_t)(i * 37 % 251);
    for (size_t j = 0; j < len; ++j) p[j] = (char)('a' + (i + j) % 26);
    p[len] = 0;
    p += len + 1;
  }
  strings[STRINGS] = p;
  for (char* q = p; q < buffer + size - 1; ++q) *q = 'z';
  buffer[size - 1] = 0;

  size_t total = 0;
  for (int r = 0; r < repeat; ++r) {
    total = 0;
    for (int i = 0; i <= STRINGS; ++i) total += sve_strlen(strings[i]);
  }
  size_t want = 0;
  for (int i = 0; i <= STRINGS; ++i) want += scalar_strlen(strings[i]);
  return bench_report("strlen_u8", total == want, (double)total);
}
