// What the tests of the generic floating-point loops share: random states
// at several vector lengths, and the expected result built element by
// element from the host's instructions.
#pragma once

#include <gtest/gtest.h>

#include "generic/fp_vector.h"
#include "host_ops.h"

namespace generic_fp_test {
using namespace generic;

constexpr uint32_t kLengths[] = {1, 3, 6, 32};

template <typename T>
using VecFn = void (*)(VecV*, const VecV*, const PredV*, const VecV*, CpuContext*);
template <typename T> using HostFn = T (*)(T, T, T);

struct draw {
  fp_rng rng{11};
  CpuContext context(uint32_t vl) {
    CpuContext ctx{};
    ctx.vl = vl;
    ctx.fpcr = random_fpscr(rng);
    ctx.fpsr = (rng() & 1) ? uint32_t(rng()) & kFpsrKept : 0;
    return ctx;
  }
  template <typename T> VecV vector(uint32_t vl) {
    VecV v;
    for (auto& b : v.b) b = uint8_t(rng());
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i) set_element<T>(v, i, random_operand<T>(rng));
    return v;
  }
  // Random bits, so that the bits inside an element other than its first
  // are set and clear too.
  PredV predicate() { return {{rng(), rng(), rng(), rng()}}; }
};

// Runs `body` on `rounds` random contexts at each of the vector lengths.
template <typename Body> void for_random_cases(int rounds, Body body) {
  draw d;
  for (uint32_t vl : kLengths)
    for (int round = 0; round < rounds; ++round) {
      CpuContext ctx = d.context(vl);
      body(d, vl, ctx);
    }
}

// What an element loop must leave: per element either the host's result
// with its flags, or the old value.
template <typename T> struct expectation {
  VecV value;
  uint32_t fpsr;
  expectation(const VecV& start, uint32_t fpsr_before) : value(start), fpsr(fpsr_before) {}
  template <typename Host> void compute(unsigned i, uint32_t fpcr, Host host) {
    host_fpcr_scope scope(fpcr);
    const T r = host();
    fpsr = (fpsr | scope.flags()) & kFpsrKept;
    set_element<T>(value, i, r);
  }
};

template <typename T>
void expect_elements(const VecV& expected, const VecV& actual, uint32_t vl, const char* what) {
  for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
    ASSERT_EQ(element<T>(actual, i), element<T>(expected, i))
        << what << " element " << i << " vl " << vl;
}

// Zdn, Pg, Zm forms; unary ones take their operand from the last vector.
template <typename T>
void merging_against_host(VecFn<T> fn, HostFn<T> host_op, bool unary, const char* what) {
  for_random_cases(40, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV a = d.vector<T>(vl), b = d.vector<T>(vl);
    const PredV g = d.predicate();
    expectation<T> want(a, ctx.fpsr);
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
      if (active(g, i, sizeof(T))) {
        const T x = element<T>(a, i), y = element<T>(b, i);
        want.compute(i, ctx.fpcr, [&] { return unary ? host_op(y, 0, 0) : host_op(x, y, 0); });
      }
    VecV out;
    fn(&out, &a, &g, &b, &ctx);
    expect_elements<T>(want.value, out, vl, what);
    ASSERT_EQ(ctx.fpsr, want.fpsr) << what << " vl " << vl;
  });
}

// The tree of FADDV and FMAXV: neighbours paired level by level over a
// power-of-two count, inactive and missing elements replaced by the
// identity, every pairing a real operation with its flags.
template <typename T, typename Host>
T host_tree(const VecV& a, const PredV& g, unsigned n, T identity, uint32_t fpcr, uint32_t* fpsr,
            Host op) {
  unsigned p = 1;
  while (p < n) p *= 2;
  T slots[128];
  for (unsigned i = 0; i < p; ++i)
    slots[i] = i < n && active(g, i, sizeof(T)) ? element<T>(a, i) : identity;
  for (; p > 1; p /= 2)
    for (unsigned k = 0; k < p / 2; ++k) {
      host_fpcr_scope scope(fpcr);
      slots[k] = op(slots[2 * k], slots[2 * k + 1], T(0));
      *fpsr |= scope.flags();
    }
  return slots[0];
}

template <typename T> using ReduceFn = uint64_t (*)(const PredV*, const VecV*, CpuContext*);

template <typename T>
void tree_against_host(ReduceFn<T> fn, HostFn<T> op, FpConstant identity, const char* what) {
  for_random_cases(40, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV a = d.vector<T>(vl);
    const PredV g = d.predicate();
    uint32_t fpsr = ctx.fpsr;
    const T want =
        host_tree<T>(a, g, vl * 8 / sizeof(T), fp_constant<T>(identity), ctx.fpcr, &fpsr, op);
    ASSERT_EQ(fn(&g, &a, &ctx), want) << what << " vl " << vl;
    ASSERT_EQ(ctx.fpsr, fpsr & kFpsrKept) << what << " vl " << vl;
  });
}

// Forms without a predicate: every element computed.
template <typename T>
void unpredicated_against_host(void (*fn)(VecV*, const VecV*, const VecV*, CpuContext*),
                               HostFn<T> host_op, const char* what) {
  for_random_cases(20, [&](draw& d, uint32_t vl, CpuContext& ctx) {
    const VecV a = d.vector<T>(vl), b = d.vector<T>(vl);
    expectation<T> want(a, ctx.fpsr);
    for (unsigned i = 0; i < vl * 8 / sizeof(T); ++i)
      want.compute(i, ctx.fpcr, [&] { return host_op(element<T>(a, i), element<T>(b, i), 0); });
    VecV out;
    fn(&out, &a, &b, &ctx);
    expect_elements<T>(want.value, out, vl, what);
    ASSERT_EQ(ctx.fpsr, want.fpsr) << what;
  });
}

// The function of a family for the width T.
template <typename T, typename F> F by_width(F half, F single, F dbl) {
  return sizeof(T) == 2 ? half : sizeof(T) == 4 ? single : dbl;
}

template <typename T> class EveryWidth : public testing::Test {};
using Widths = testing::Types<uint16_t, uint32_t, uint64_t>;

} // namespace generic_fp_test
