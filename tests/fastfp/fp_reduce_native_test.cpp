// faddv and fadda have complete handlers but no decoder, so the reference
// check never reaches them. Here they meet the processor's own instructions
// directly: this test runs where SVE is present at a 48-byte vector length.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "decode/handler_declarations.h"
#include "decode/host_fpsr.h"
#include "handlers/fp_reduce_unrouted.h"

namespace {

uint64_t host_fpcr() {
  uint64_t v;
  asm volatile("mrs %0, fpcr" : "=r"(v));
  return v;
}
void set_host_fpcr(uint64_t v) { asm volatile("msr fpcr, %0" ::"r"(v)); }

struct operands {
  alignas(16) uint8_t initial[48]; // z0 before: the initial value of fadda
  alignas(16) uint8_t zn[48];      // z1
  alignas(16) uint8_t pred[48];    // p1, one byte per vector byte
  uint64_t fpcr;
  uint32_t fpsr;
};

struct outcome {
  alignas(16) uint8_t z0[48];
  uint32_t fpsr;
};

// The instruction on z0, p1 and z1. Each asm names the registers it uses;
// the compiler knows nothing of SVE and keeps nothing of its own in them.
#define NATIVE(insn)                                                                               \
  asm volatile(".arch_extension sve\n\t"                                                           \
               "ldr z0, [%[initial]]\n\t"                                                          \
               "ldr z1, [%[zn]]\n\t"                                                               \
               "ldr p1, [%[packed]]\n\t"                                                           \
               "msr fpcr, %[fpcr]\n\t"                                                             \
               "msr fpsr, %[fpsr_in]\n\t" insn "\n\t"                                              \
               "mrs %[fpsr_out], fpsr\n\t"                                                         \
               "str z0, [%[out]]"                                                                  \
               : [fpsr_out] "=&r"(fpsr)                                                            \
               : [initial] "r"(in.initial), [zn] "r"(in.zn), [packed] "r"(packed),                 \
                 [fpcr] "r"(in.fpcr), [fpsr_in] "r"(uint64_t{in.fpsr}), [out] "r"(out.z0)          \
               : "v0", "v1", "memory")

enum class op { faddv, fadda };

outcome run_native(op o, bool dbl, const operands& in) {
  uint8_t packed[8] = {};
  for (unsigned i = 0; i < 48; ++i)
    packed[i / 8] |= static_cast<uint8_t>((in.pred[i] & 1) << (i % 8));
  outcome out{};
  uint64_t fpsr = 0;
  const uint64_t saved = host_fpcr();
  if (o == op::faddv && !dbl) NATIVE("faddv s0, p1, z1.s");
  if (o == op::faddv && dbl) NATIVE("faddv d0, p1, z1.d");
  if (o == op::fadda && !dbl) NATIVE("fadda s0, p1, s0, z1.s");
  if (o == op::fadda && dbl) NATIVE("fadda d0, p1, d0, z1.d");
  set_host_fpcr(saved);
  out.fpsr = static_cast<uint32_t>(fpsr);
  return out;
}

// As a thin decoder would call it: the application's FPSR on the host
// around the handler, under the application's FPCR.
outcome run_handler(op o, bool dbl, const operands& in) {
  alignas(16) static cpu_state s;
  std::memset(&s, 0, sizeof s);
  std::memcpy(s.z[0], in.initial, 48);
  std::memcpy(s.z[1], in.zn, 48);
  std::memcpy(s.p[1], in.pred, 48);
  const uint32_t size = dbl ? ELEM_D : ELEM_S;
  const aarch64_z_reg zn{1, size, kZNone, kZNone};
  const aarch64_p_reg pg{1, kPPlain, kPNone, kPNone};
  const uint64_t saved = host_fpcr();
  set_host_fpcr(in.fpcr);
  write_host_fpsr(in.fpsr);
  if (o == op::faddv)
    sve_faddv_vpz(&s, 0, pg, zn);
  else
    sve_fadda_vpz(&s, 0, pg, zn);
  s.fpsr = read_host_fpsr();
  set_host_fpcr(saved);
  outcome out{};
  std::memcpy(out.z0, s.z[0], 48);
  out.fpsr = s.fpsr;
  return out;
}

// Elements that matter to an addition: zeros of both signs, infinities,
// quiet and signalling NaNs, subnormals, the largest finite values, values
// that cancel, and ordinary ones.
uint64_t draw_value(std::mt19937_64& rng, bool dbl) {
  const unsigned mant = dbl ? 52 : 23, exp_bits = dbl ? 11 : 8;
  const uint64_t exp_max = (1ull << exp_bits) - 1, mant_all = (1ull << mant) - 1;
  const uint64_t sign = (rng() & 1) << (mant + exp_bits);
  auto make = [&](uint64_t e, uint64_t m) { return sign | e << mant | (m & mant_all); };
  switch (rng() % 32) { // NaNs rare enough that most sums stay numbers
  case 0:
    return make(0, 0);
  case 1:
    return make(exp_max, 0);
  case 2:
    return make(exp_max, (1ull << (mant - 1)) | rng());
  case 3:
    return make(exp_max, 1 + rng() % ((1ull << (mant - 1)) - 1));
  case 4:
  case 5:
    return make(0, rng());
  case 6:
  case 7:
    return make(exp_max - 1, rng() % 2 ? mant_all : rng());
  case 8:
  case 9:
    return make(1, rng());
  default:
    return make(exp_max / 2 + rng() % 8, rng() % 4 ? rng() & ~0xffull : rng());
  }
}

operands draw(std::mt19937_64& rng, bool dbl) {
  operands in{};
  const unsigned bytes = dbl ? 8 : 4;
  for (unsigned i = 0; i < 48 / bytes; ++i) {
    const uint64_t v = draw_value(rng, dbl);
    std::memcpy(in.zn + i * bytes, &v, bytes);
    in.pred[i * bytes] = rng() % 4 != 0;
  }
  if (rng() % 8 == 0) std::memset(in.pred, 0, 48);
  for (unsigned i = 0; i < 48; ++i) in.initial[i] = static_cast<uint8_t>(rng());
  const uint64_t initial = draw_value(rng, dbl);
  std::memcpy(in.initial, &initial, bytes);
  // Rounding mode, FZ and DN; the cumulative flags now and then already set.
  in.fpcr = rng() & (3ull << 22 | 1ull << 24 | 1ull << 25);
  in.fpsr = rng() % 2 ? 0 : static_cast<uint32_t>(rng() & 0x9f);
  return in;
}

TEST(FpReduceNative, HandlersMatchTheProcessor) {
  std::mt19937_64 rng(11);
  for (op o : {op::faddv, op::fadda}) {
    for (bool dbl : {false, true}) {
      unsigned failures = 0;
      for (int k = 0; k < 3000 && failures < 5; ++k) {
        const operands in = draw(rng, dbl);
        const outcome want = run_native(o, dbl, in), got = run_handler(o, dbl, in);
        const bool same = std::memcmp(want.z0, got.z0, 48) == 0 && want.fpsr == got.fpsr;
        if (!same) ++failures;
        uint64_t w = 0, g = 0;
        std::memcpy(&w, want.z0, 8);
        std::memcpy(&g, got.z0, 8);
        EXPECT_TRUE(same) << (o == op::faddv ? "faddv" : "fadda") << (dbl ? ".d" : ".s") << " case "
                          << k << std::hex << ": low 8 bytes want 0x" << w << " got 0x" << g
                          << ", fpsr want 0x" << want.fpsr << " got 0x" << got.fpsr << ", fpcr 0x"
                          << in.fpcr;
      }
    }
  }
}

} // namespace
