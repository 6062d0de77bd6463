// The predicate test and the flags it sets, the packed form, and the
// integer compares' result bytes and flags.
#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>

#include "handlers/predicate_form.h"
#include "test_state.h"

namespace {

constexpr uint64_t kAllFlags = kFlagN | kFlagZ | kFlagC | kFlagV;
// Bits of the nzcv field that are no flags; a handler must keep them.
constexpr uint64_t kOtherBits = 0xa5a5a5a50f0f0f0full & ~kAllFlags;

constexpr uint32_t kPtestP1P2 = 0x2550c440;      // ptest p1, p2.b
constexpr uint32_t kCmpeqS = 0x2483a440;         // cmpeq p0.s, p1/z, z2.s, z3.s
constexpr uint32_t kCmpeqPdIsPg = 0x2403a441;    // cmpeq p1.b, p1/z, z2.b, z3.b
constexpr uint32_t kCmphiImm127 = 0x243fc450;    // cmphi p0.b, p1/z, z2.b, #127
constexpr uint32_t kCmpgtImmMinus1 = 0x251f0450; // cmpgt p0.b, p1/z, z2.b, #-1

struct pred {
  uint8_t b[48] = {};
};

// Bit 0 set at the given offsets; odd upper bits elsewhere, which must not count.
pred with_bits(std::initializer_list<unsigned> on) {
  pred p;
  for (auto& byte : p.b) byte = 0xfe;
  for (unsigned i : on) p.b[i] = 0x03;
  return p;
}
pred all_true() {
  pred p;
  std::memset(p.b, 1, 48);
  return p;
}

uint64_t flags_after(unsigned stride, const pred& mask, const pred& result) {
  cpu_state s{};
  s.nzcv = kOtherBits | kFlagV; // V must come out clear
  const char* m = reinterpret_cast<const char*>(mask.b);
  const char* r = reinterpret_cast<const char*>(result.b);
  switch (stride) {
  case 1:
    sve_ptest<signed char>(&s, m, r);
    break;
  case 2:
    sve_ptest<unsigned short>(&s, m, r);
    break;
  case 4:
    sve_ptest<int>(&s, m, r);
    break;
  default:
    sve_ptest<unsigned long>(&s, m, r);
    break;
  }
  EXPECT_EQ(s.nzcv & ~kAllFlags, kOtherBits) << "bits other than the flags changed";
  return s.nzcv & kAllFlags;
}

TEST(PredicateTest, FlagsFollowFirstAndLastActiveElement) {
  struct {
    const char* what;
    unsigned stride;
    pred mask, result;
    uint64_t want;
  } cases[] = {
      {"no active element, result all true", 1, pred{}, all_true(), kFlagZ | kFlagC},
      {"all true", 1, all_true(), all_true(), kFlagN},
      {"only the last active and true", 1, with_bits({47}), with_bits({47}), kFlagN},
      {"only the first active and false", 1, with_bits({0}), with_bits({1}), kFlagZ | kFlagC},
      {"first true, last false", 2, with_bits({0, 46}), with_bits({0}), kFlagN | kFlagC},
      {"middle true only", 8, with_bits({0, 16, 40}), with_bits({16}), kFlagC},
      {"stride 4 ignores a mask byte off the element start", 4, with_bits({1}), all_true(),
       kFlagZ | kFlagC},
      {"stride 4 ignores a result byte off the element start", 4, with_bits({4}), with_bits({5}),
       kFlagZ | kFlagC},
  };
  for (const auto& c : cases) EXPECT_EQ(flags_after(c.stride, c.mask, c.result), c.want) << c.what;
}

TEST(PredicateTest, PtestIsByteWiseWhateverSizePgWasWrittenAt) {
  cpu_state s{};
  for (unsigned i = 0; i < 48; i += 4) s.p[1][i] = 1; // Pg as a 32-bit compare leaves it
  for (unsigned i = 0; i < 48; ++i) s.p[2][i] = i % 4 != 0;
  ASSERT_EQ(run_word(&s, kPtestP1P2), AARCH64_DECODE_OK);
  EXPECT_EQ(s.nzcv, kFlagZ | kFlagC); // no byte both active and true

  s.p[2][44] = 1; // the last active byte
  ASSERT_EQ(run_word(&s, kPtestP1P2), AARCH64_DECODE_OK);
  EXPECT_EQ(s.nzcv, 0u);
}

// At each length the packed form has one bit per register byte and nothing
// past the length: lengths below, at and across 64-bit word boundaries.
TEST(PredicateForm, PackedFormRoundTripsAndReadsBitZeroOnly) {
  const vector_length_scope restore_length;
  std::mt19937_64 rng(8);
  for (unsigned length : {16u, 48u, 64u, 80u, 144u, 256u}) {
    ASSERT_TRUE(set_vector_bytes(length));
    for (int trial = 0; trial < 100; ++trial) {
      pred_bits bits{};
      for (unsigned i = 0; i < length; ++i)
        if (rng() & 1) bits.w[i / 64] |= uint64_t{1} << (i % 64);
      alignas(16) uint8_t bytes[kMaxVectorBytes];
      std::memset(bytes, 0xee, sizeof bytes);
      unpack_predicate(bytes, bits);
      for (unsigned i = 0; i < length; ++i) ASSERT_EQ(bytes[i], bit_set(bits, i)) << length;
      for (unsigned i = length; i < kMaxVectorBytes; ++i) ASSERT_EQ(bytes[i], 0xee) << length;
      for (unsigned i = 0; i < kMaxVectorBytes; ++i) bytes[i] |= 0xf0 & static_cast<uint8_t>(rng());
      const pred_bits back = pack_predicate(bytes);
      for (unsigned k = 0; k < kPredicateWords; ++k) ASSERT_EQ(back.w[k], bits.w[k]) << length;
    }
  }
}

TEST(IntegerCompare, ResultIsElementSizedAndZeroingAndFlagsAreSet) {
  std::mt19937_64 rng(9);
  for (int trial = 0; trial < 50; ++trial) {
    cpu_state s;
    randomize(&s, rng); // predicate bytes hold any byte: only bit 0 may count
    s.nzcv = kOtherBits | (rng() & kAllFlags);
    for (unsigned i = 0; i < 12; ++i)
      if (rng() & 1) std::memcpy(s.z[3] + 4 * i, s.z[2] + 4 * i, 4);
    const cpu_state before = s;
    ASSERT_EQ(run_word(&s, kCmpeqS), AARCH64_DECODE_OK);
    pred want;
    for (unsigned i = 0; i < 12; ++i)
      want.b[4 * i] =
          (before.p[1][4 * i] & 1) && !std::memcmp(before.z[2] + 4 * i, before.z[3] + 4 * i, 4);
    ASSERT_EQ(std::memcmp(s.p[0], want.b, 48), 0);
    pred mask;
    for (unsigned i = 0; i < 48; ++i) mask.b[i] = before.p[1][i];
    ASSERT_EQ(s.nzcv, kOtherBits | flags_after(4, mask, want));
  }
}

TEST(IntegerCompare, PdEqualToPgTakesTheFlagsFromTheOldPg) {
  cpu_state s{};
  s.p[1][0] = s.p[1][47] = 1;
  s.z[2][47] = s.z[3][47] = 7;
  s.z[2][0] = 1; // element 0 differs, element 47 equal
  ASSERT_EQ(run_word(&s, kCmpeqPdIsPg), AARCH64_DECODE_OK);
  // With the old Pg the first active element is false: N clear. With the
  // new result as the mask it would be element 47, true.
  EXPECT_EQ(s.nzcv, 0u);
  for (unsigned i = 0; i < 48; ++i) EXPECT_EQ(s.p[1][i], i == 47 ? 1 : 0) << i;
}

TEST(IntegerCompare, ImmediatesCompareAtTheElementsSignedness) {
  cpu_state s{};
  std::memset(s.z[2], 0xff, 48);
  std::memset(s.p[1], 1, 48);
  ASSERT_EQ(run_word(&s, kCmphiImm127), AARCH64_DECODE_OK); // 255 > 127
  EXPECT_EQ(std::memcmp(s.p[0], all_true().b, 48), 0);
  EXPECT_EQ(s.nzcv, kFlagN);
  ASSERT_EQ(run_word(&s, kCmpgtImmMinus1), AARCH64_DECODE_OK); // -1 > -1 is false
  EXPECT_EQ(std::memcmp(s.p[0], pred{}.b, 48), 0);
  EXPECT_EQ(s.nzcv, kFlagZ | kFlagC);
}

} // namespace
