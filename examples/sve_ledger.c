// An example SVE program: a week of deposits and withdrawals on a few
// accounts, added up with SVE instructions through the ACLE intrinsics of
// arm_sve.h.
//
// The accounts of one day move through the vector registers with predicated
// SVE loads and stores (svld1, svst1), as many accounts at a time as the
// vector holds; svwhilelt switches off the lanes past the last account, so
// the program gives the same result at every vector length. The arithmetic
// is SVE too (svadd, svsub); the rest of the program is ordinary C.
//
// The week's work is a region of interest (zorvo/roi.h): run under
// `zorvo --trace-dir DIR`, its SVE loads and stores are written to a trace
// in DIR. The markers stop a program that runs outside zorvo, so the plain
// build compiles them away with -DZORVO_ROI_DISABLE; examples/CMakeLists.txt
// builds the program both ways.
//
// Build: aarch64-linux-gnu-gcc -O2 -fno-tree-vectorize -march=armv8.2-a+sve sve_ledger.c
// (-fno-tree-vectorize keeps the compiler from adding SVE instructions of its
// own to the plain C loops, so the program's SVE instructions are exactly the
// ones written here.)
#include <arm_sve.h>
#include <inttypes.h>
#include <stdio.h>
#include <zorvo/roi.h>

enum { kAccounts = 8, kDays = 7 };

static const char* const kNames[kAccounts] = {"Ada",  "Brian", "Chloe", "Dmitri",
                                              "Elif", "Femi",  "Greta", "Hiro"};

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

  ZORVO_ROI_START();
  for (int d = 0; d < kDays; ++d) {
    for (int a = 0; a < kAccounts; a += (int)svcntw()) {
      const svbool_t lanes = svwhilelt_b32_s32(a, kAccounts);
      const svint32_t deposit = svld1_s32(lanes, &deposits[d][a]);
      const svint32_t withdrawal = svld1_s32(lanes, &withdrawals[d][a]);
      svst1_s32(lanes, &in[a], svadd_s32_x(lanes, svld1_s32(lanes, &in[a]), deposit));
      svst1_s32(lanes, &out[a], svadd_s32_x(lanes, svld1_s32(lanes, &out[a]), withdrawal));
      const svint32_t net = svsub_s32_x(lanes, deposit, withdrawal);
      // A monthly fee of 1 on every balance, every day.
      const svint32_t b = svadd_s32_x(lanes, svld1_s32(lanes, &balance[a]), net);
      svst1_s32(lanes, &balance[a], svsub_n_s32_x(lanes, b, 1));
    }
  }
  ZORVO_ROI_STOP();

  int64_t sum = 0;
  for (int a = 0; a < kAccounts; ++a) {
    printf("%-8s %8" PRId32 " %8" PRId32 " %8" PRId32 " %8" PRId32 "\n", kNames[a], start[a], in[a],
           out[a], balance[a]);
    sum += balance[a];
  }
  printf("all accounts: %" PRId64 "\n", sum);
  return 0;
}
