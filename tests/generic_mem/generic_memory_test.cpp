// The generic tier's loads called directly, next to pages that cannot be
// read, and at vector lengths other than ours.
#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "generic/first_fault.h"
#include "generic/load_quad.h"
#include "memory/sve_fault.h"
#include "test_pages.h"

namespace {

const char kFatal[] = "zorvo's SVESigHandler caught signal SIGSEGV";

uint64_t lane(const VecV& v, unsigned bytes, unsigned i) {
  uint64_t x = 0;
  std::memcpy(&x, v.b + i * bytes, bytes);
  return x;
}
void set_lane(VecV& v, unsigned bytes, unsigned i, uint64_t x) {
  std::memcpy(v.b + i * bytes, &x, bytes);
}

// Every lane of `bytes` holds x.
VecV lanes(unsigned bytes, uint64_t x) {
  VecV v{};
  for (unsigned i = 0; i < 48 / bytes; ++i) set_lane(v, bytes, i, x);
  return v;
}

PredV every_element(unsigned esize, unsigned vl = 6) {
  PredV p{};
  for (unsigned i = 0; i < vl * 8; i += esize) generic::set_pred_bit(p, i, true);
  return p;
}

struct GenericMemory : ::testing::Test {
  std::mt19937_64 rng{5};
  CpuContext ctx{};
  VecV out;
  const PredV all_s = every_element(4), all_d = every_element(8);
  void SetUp() override {
    SVEInitialize();
    ctx.vl = 6;
    ctx.ffr = every_element(1);
    std::memset(out.b, 0xee, sizeof out.b);
  }
};

// Each gather form against addresses the test places itself: the offset a
// lane means, with junk above the 32 bits that a form must ignore.
TEST_F(GenericMemory, GatherFormsFindTheirAddressesAndExtendTheirValues) {
  const uint64_t middle = address_of(readable_page() + kPage / 2);
  for (int round = 0; round < 50; ++round) {
    const int64_t want = static_cast<int64_t>(rng() % 400) - 200; // bytes or indices
    const uint64_t junk = rng() << 32;
    // 64-bit lanes, sign-extended low half, scaled by 2, signed result.
    VecV v = lanes(8, 0);
    set_lane(v, 8, 3, static_cast<uint32_t>(want) | junk);
    generic::VecS64LoadFF2XSVZ(&out, &all_d, middle, &v, &ctx);
    EXPECT_EQ(lane(out, 8, 3), memory_value(middle + want * 2, 2, true));
    // Zero-extended low half, unscaled, unsigned result.
    v = lanes(8, 0);
    set_lane(v, 8, 1, static_cast<uint32_t>(want + 200) | junk);
    generic::VecU64LoadFF4YVSZ(&out, &all_d, &v, middle, &ctx);
    EXPECT_EQ(lane(out, 8, 1), memory_value(middle + want + 200, 4, false));
    // Whole 64-bit offsets, scaled by 8.
    v = lanes(8, 0);
    set_lane(v, 8, 5, static_cast<uint64_t>(want));
    generic::VecU64LoadFF8SVZ(&out, &all_d, middle, &v, &ctx);
    EXPECT_EQ(lane(out, 8, 5), memory_value(middle + want * 8, 8, false));
    // 32-bit lanes: plain offsets are zero-extended, X ones sign-extended.
    v = lanes(4, 0);
    set_lane(v, 4, 7, static_cast<uint32_t>(want + 200));
    generic::VecS32LoadFF1VSZ(&out, &all_s, &v, middle, &ctx);
    EXPECT_EQ(lane(out, 4, 7), memory_value(middle + want + 200, 1, true) & 0xffffffffu);
    v = lanes(4, 0);
    set_lane(v, 4, 2, static_cast<uint32_t>(want));
    generic::VecU32LoadFF2XSVZ(&out, &all_s, middle, &v, &ctx);
    EXPECT_EQ(lane(out, 4, 2), memory_value(middle + want * 2, 2, false));
    // Vector of addresses plus imm5 memory elements.
    v = lanes(8, middle);
    set_lane(v, 8, 4, middle + want);
    generic::VecS64LoadFF4VIZ(&out, &all_d, &v, 31, &ctx);
    EXPECT_EQ(lane(out, 8, 4), memory_value(middle + want + 31 * 4, 4, true));
    v = lanes(4, middle);
    set_lane(v, 4, 9, middle + want);
    generic::VecU32LoadFF2VIZ(&out, &all_s, &v, 7, &ctx);
    EXPECT_EQ(lane(out, 4, 9), memory_value(middle + want + 14, 2, false));
  }
  EXPECT_EQ(ctx.ffr.w[0], every_element(1).w[0]);
}

TEST_F(GenericMemory, InactiveElementsAreZeroAndAllReadableLeavesFfrAlone) {
  ctx.ffr.w[0] = 0x0000f0f0f0f0f0f0u; // not all set: it must neither gain nor lose bits
  PredV pg{};
  generic::set_pred_bit(pg, 2 * 2, true);
  generic::set_pred_bit(pg, 17 * 2, true);
  const uint64_t base = address_of(readable_page() + 100);
  generic::VecU16CLoadFF2LSSZ(&out, &pg, base, 3, &ctx);
  for (unsigned i = 0; i < 24; ++i)
    EXPECT_EQ(lane(out, 2, i), i == 2 || i == 17 ? memory_value(base + (3 + i) * 2, 2, false) : 0)
        << i;
  EXPECT_EQ(ctx.ffr.w[0], 0x0000f0f0f0f0f0f0u);
}

TEST_F(GenericMemory, FirstFailedGatherElementEndsTheLoad) {
  const uint64_t good = address_of(readable_page() + 8);
  VecV offsets{};
  const uint64_t element_address[6] = {good, good + 8, unmapped(), good + 16, good + 24, good};
  for (unsigned i = 0; i < 6; ++i) set_lane(offsets, 8, i, element_address[i]);
  generic::VecU64LoadFF8VSZ(&out, &all_d, &offsets, 0, &ctx);
  EXPECT_EQ(lane(out, 8, 0), memory_value(good, 8, false));
  EXPECT_EQ(lane(out, 8, 1), memory_value(good + 8, 8, false));
  for (unsigned i = 2; i < 6; ++i) EXPECT_EQ(lane(out, 8, i), 0u) << i; // 3..5 were readable
  EXPECT_EQ(ctx.ffr.w[0], 0xffffu);
  EXPECT_EQ(SVEFaultRegion, 0u);
}

TEST_F(GenericMemory, FfrBelowTheFaultStaysAndAboveItIsClearedActiveOrNot) {
  PredV pg = every_element(4);
  generic::set_pred_bit(pg, 1 * 4, false); // below the fault
  generic::set_pred_bit(pg, 6 * 4, false); // above it
  ctx.ffr.w[0] = 0xffffffffff0fu;          // element 1 (bits 4..7) already clear: stays clear
  VecV indices{};
  for (unsigned i = 0; i < 12; ++i) set_lane(indices, 4, i, i);
  // Element 4 of 32-bit indices from base lands in the unmapped page.
  const uint64_t base = address_of(readable_page() + kPage) - 4 * 4;
  generic::VecU32LoadFF4SVZ(&out, &pg, base, &indices, &ctx);
  for (unsigned i = 0; i < 4; ++i)
    EXPECT_EQ(lane(out, 4, i), i == 1 ? 0 : memory_value(base + 4 * i, 4, false)) << i;
  for (unsigned i = 4; i < 12; ++i) EXPECT_EQ(lane(out, 4, i), 0u) << i;
  EXPECT_EQ(ctx.ffr.w[0], 0xff0fu);
}

TEST_F(GenericMemory, ContiguousLoadRunsUpToThePageEndAndClearsTheRest) {
  const uint64_t base = address_of(readable_page() + kPage) - 10; // 5 halfwords fit
  generic::VecS64CLoadFF2LSSZ(&out, &all_d, base, 0, &ctx);
  for (unsigned i = 0; i < 5; ++i)
    EXPECT_EQ(lane(out, 8, i), memory_value(base + 2 * i, 2, true)) << i;
  EXPECT_EQ(lane(out, 8, 5), 0u);
  EXPECT_EQ(ctx.ffr.w[0], 0xffffffffffu); // elements 0..4 of 8 bytes each keep theirs
}

TEST_F(GenericMemory, LengthComesFromTheContext) {
  ctx.vl = 2; // two 64-bit elements; a third would fault
  const uint64_t end = address_of(readable_page() + kPage);
  const PredV all = every_element(8, 2);
  generic::VecU64CLoadFF2LSSZ(&out, &all, end - 4, 0, &ctx);
  EXPECT_EQ(lane(out, 8, 1), memory_value(end - 2, 2, false));
  EXPECT_EQ(ctx.ffr.w[0], every_element(1).w[0]);

  const uint64_t base = end - 16;
  ctx.vl = 8; // four segments of the replicated quadword
  PredV pg{};
  generic::set_pred_bit(pg, 4, true);
  generic::VecU32LoadDup4QSSZ(&out, &pg, base, 1, &ctx);
  for (unsigned seg = 0; seg < 4; ++seg)
    EXPECT_EQ(lane(out, 4, seg * 4 + 1), memory_value(base + 8, 4, false)) << seg;
}

TEST_F(GenericMemory, FaultOnTheFirstActiveElementIsReal) {
  VecV offsets{};
  set_lane(offsets, 8, 0, unmapped());
  set_lane(offsets, 8, 1, unmapped() + 8);
  PredV pg = every_element(8);
  EXPECT_EXIT(generic::VecU64LoadFF1VSZ(&out, &pg, &offsets, 0, &ctx),
              ::testing::KilledBySignal(SIGSEGV), kFatal);
  generic::set_pred_bit(pg, 0, false); // element 0 holds a bad address too
  EXPECT_EXIT(generic::VecU64LoadFF1VSZ(&out, &pg, &offsets, 0, &ctx),
              ::testing::KilledBySignal(SIGSEGV), kFatal);
}

TEST_F(GenericMemory, QuadwordLoadReadsOnlyTheFirstSegmentsActiveElements) {
  // The 16 bytes end at the page end: a read beyond them would fault.
  const uint64_t quad = address_of(readable_page() + kPage) - 16;
  PredV pg{};
  generic::set_pred_bit(pg, 3, true);
  generic::set_pred_bit(pg, 20, true); // beyond the first 128 bits: ignored
  generic::VecU8LoadDup1QSIZ(&out, &pg, quad + 32, -2, &ctx);
  for (unsigned i = 0; i < 48; ++i)
    EXPECT_EQ(out.b[i], i % 16 == 3 ? memory_value(quad + 3, 1, false) : 0) << i;

  pg = PredV{};
  for (unsigned bit : {0u, 8u, 16u, 24u, 40u}) generic::set_pred_bit(pg, bit, true);
  generic::VecU64LoadDup8QSSZ(&out, &pg, quad - 24, 3, &ctx);
  for (unsigned i = 0; i < 6; ++i)
    EXPECT_EQ(lane(out, 8, i), memory_value(quad + 8 * (i % 2), 8, false)) << i;
  EXPECT_EXIT(generic::VecU64LoadDup8QSIZ(&out, &pg, quad, 1, &ctx),
              ::testing::KilledBySignal(SIGSEGV), kFatal);
}

TEST_F(GenericMemory, ReadsAreOfTheirOwnWidthAndGuardedOnlyWhenAsked) {
  const uint64_t end = address_of(readable_page() + kPage);
  bool fault = false;
  EXPECT_EQ(generic::ReadMemLib1(end - 1, 1, &fault, &ctx), memory_value(end - 1, 1, false));
  EXPECT_EQ(generic::ReadMemLib2(end - 2, 1, &fault, &ctx), memory_value(end - 2, 2, false));
  EXPECT_EQ(generic::ReadMemLib4(end - 4, 1, &fault, &ctx), memory_value(end - 4, 4, false));
  EXPECT_EQ(generic::ReadMemLib8(end - 8, 1, &fault, &ctx), memory_value(end - 8, 8, false));
  EXPECT_FALSE(fault);
  EXPECT_EQ(generic::ReadMemLib4(end - 2, 1, &fault, &ctx), 0u);
  EXPECT_TRUE(fault);
  EXPECT_EXIT(generic::ReadMemLib2(end, 0, &fault, &ctx), ::testing::KilledBySignal(SIGSEGV),
              kFatal);
}

} // namespace
