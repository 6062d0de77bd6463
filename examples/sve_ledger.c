// An example SVE program: a week of deposits and withdrawals on a few
// accounts, added up with SVE instructions through the ACLE intrinsics of
// arm_sve.h.
//
// The arithmetic is SVE (svadd, svsub). The accounts move in and out of the
// vector registers through their low 128 bits, the NEON view of a Z register,
// four accounts at a time; the rest of the program is ordinary C.
//
// Build: aarch64-linux-gnu-gcc -O2 -fno-tree-vectorize -march=armv8.2-a+sve sve_ledger.c
// (-fno-tree-vectorize keeps the compiler from adding SVE instructions of its
// own to the plain C loops: for now the emulator runs additions and
// subtractions only.)
#include <arm_sve.h>
#include <inttypes.h>
#include <stdio.h>

enum { kAccounts = 8, kDays = 7, kPerVector = 4 };

static const char* const kNames[kAccounts] = {"Ada",  "Brian", "Chloe", "Dmitri",
                                              "Elif", "Femi",  "Greta", "Hiro"};

// Four 32-bit lanes in and out of an SVE register.
static svint32_t load4(const int32_t* p) {
  svint32_t v;
  __asm__ volatile("ldr %q0, [%1]" : "=w"(v) : "r"(p) : "memory");
  return v;
}
static void store4(int32_t* p, svint32_t v) {
  __asm__ volatile("str %q1, [%0]" : : "r"(p), "w"(v) : "memory");
}

int main(void) {
  int32_t balance[kAccounts], deposits[kDays][kAccounts], withdrawals[kDays][kAccounts];
  for (int a = 0; a < kAccounts; ++a) {
    balance[a] = 100 * (a + 1);
    for (int d = 0; d < kDays; ++d) {
      deposits[d][a] = (a * 37 + d * 11) % 90;
      withdrawals[d][a] = (a * 13 + d * 29) % 70;
    }
  }

  printf("%-8s %8s %8s %8s %8s\n", "account", "start", "in", "out", "end");
  int32_t start[kAccounts], in[kAccounts] = {0}, out[kAccounts] = {0};
  for (int a = 0; a < kAccounts; ++a) start[a] = balance[a];

  for (int d = 0; d < kDays; ++d) {
    for (int a = 0; a < kAccounts; a += kPerVector) {
      const svbool_t all = svptrue_b32();
      svint32_t total_in = svadd_s32_x(all, load4(&in[a]), load4(&deposits[d][a]));
      svint32_t total_out = svadd_s32_x(all, load4(&out[a]), load4(&withdrawals[d][a]));
      svint32_t net = svsub_s32_x(all, load4(&deposits[d][a]), load4(&withdrawals[d][a]));
      // A monthly fee of 1 on every balance, every day.
      svint32_t b = svsub_n_s32_x(all, svadd_s32_x(all, load4(&balance[a]), net), 1);
      store4(&in[a], total_in);
      store4(&out[a], total_out);
      store4(&balance[a], b);
    }
  }

  int64_t sum = 0;
  for (int a = 0; a < kAccounts; ++a) {
    printf("%-8s %8" PRId32 " %8" PRId32 " %8" PRId32 " %8" PRId32 "\n", kNames[a], start[a], in[a],
           out[a], balance[a]);
    sum += balance[a];
  }
  printf("all accounts: %" PRId64 "\n", sum);
  return 0;
}
