// The reference check's own parts: the native stub, the comparison and the
// draw. Runs on the SVE reference processor.
#include <gtest/gtest.h>

#include <cstring>

#include "compare.h"
#include "decode/reserved_encodings.h"
#include "design_differences.h"
#include "draw.h"
#include "native_run.h"

namespace {

class Reference : public ::testing::Test {
protected:
  static void SetUpTestSuite() { ASSERT_EQ(native_init(), nullptr); }
};

machine_state numbered_state() {
  machine_state m{};
  for (unsigned n = 0; n < 31; ++n) m.x[n] = 0x1000 + n;
  m.sp = reinterpret_cast<uint64_t>(the_test_area().begin + 4096);
  m.nzcv = 0xa0000000;
  m.fpsr = 0x9f;
  m.fpcr = 3u << 22 | 1u << 24 | 1u << 25 | 1u << 26 | 1u << 19;
  for (unsigned n = 0; n < 32; ++n)
    for (unsigned i = 0; i < vector_bytes(); ++i) m.z[n][i] = static_cast<uint8_t>(n * 7 + i);
  for (unsigned n = 0; n < 16; ++n)
    for (unsigned i = 0; i < predicate_bytes(); ++i) m.p[n][i] = static_cast<uint8_t>(n * 16 + i);
  for (unsigned i = 0; i < predicate_bytes(); ++i) m.ffr[i] = static_cast<uint8_t>(0xa5 ^ i);
  return m;
}

TEST_F(Reference, ANopHandsBackEveryRegisterUnchanged) {
  const machine_state in = numbered_state();
  machine_state out = in;
  ASSERT_EQ(run_native_word(0xd503201f, &out), native_outcome::ran);
  EXPECT_EQ(std::memcmp(&in, &out, sizeof in), 0);
}

TEST_F(Reference, WordsSeeTheLoadedStateAndTheirResultsComeBack) {
  const machine_state in = numbered_state();
  machine_state out = in;
  ASSERT_EQ(run_native_word(0x04a20020, &out), native_outcome::ran); // add z0.s, z1.s, z2.s
  for (unsigned i = 0; i < vector_bytes() / 4; ++i) {
    uint32_t a, b, r;
    std::memcpy(&a, in.z[1] + 4 * i, 4);
    std::memcpy(&b, in.z[2] + 4 * i, 4);
    std::memcpy(&r, out.z[0] + 4 * i, 4);
    EXPECT_EQ(r, a + b) << i;
  }
  out = in;
  ASSERT_EQ(run_native_word(0x910043ff, &out), native_outcome::ran); // add sp, sp, #16
  EXPECT_EQ(out.sp, in.sp + 16);
  out = in;
  ASSERT_EQ(run_native_word(0xd53b4404, &out), native_outcome::ran); // mrs x4, fpcr
  EXPECT_EQ(out.x[4], in.fpcr);
  out = in;
  ASSERT_EQ(run_native_word(0x2519f003, &out), native_outcome::ran); // rdffr p3.b
  EXPECT_EQ(std::memcmp(out.p[3], in.ffr, predicate_bytes()), 0);
}

TEST_F(Reference, UndefinedWordsAndFaultsAreToldApartAndLeaveTheStateAlone) {
  const machine_state in = numbered_state();
  machine_state out = in;
  EXPECT_EQ(run_native_word(0x00000000, &out), native_outcome::undefined); // udf #0
  out.x[1] = reinterpret_cast<uint64_t>(the_test_area().unreadable);
  const machine_state pointing = out;
  EXPECT_EQ(run_native_word(0xf9400020, &out), native_outcome::fault); // ldr x0, [x1]
  EXPECT_EQ(std::memcmp(&pointing, &out, sizeof out), 0);
  // The process goes on as before: a word after a fault still runs.
  EXPECT_EQ(run_native_word(0xd503201f, &out), native_outcome::ran);
}

TEST(Machine, PredicatesRoundTripThroughTheByteForm) {
  uint8_t packed[kMaxPredicateBytes] = {0x01, 0x80, 0xff, 0x00, 0x5a, 0xc3};
  cpu_state s{};
  unpack_predicate(packed, s.p[0]);
  EXPECT_EQ(s.p[0][0], 1);
  EXPECT_EQ(s.p[0][1], 0);
  EXPECT_EQ(s.p[0][15], 1);
  s.p[0][16] = 0xfe; // only bit 0 counts on the way back
  uint8_t back[kMaxPredicateBytes];
  pack_predicate(s.p[0], back);
  EXPECT_EQ(back[2], 0xfe);
  EXPECT_EQ(back[0], 0x01);
  EXPECT_EQ(back[5], 0xc3);
}

struct compared {
  machine_state before{}, expected{}, actual{};
  cpu_state raw{};
  uint8_t mem_before[64]{}, mem_expected[64]{}, mem_actual[64]{};
  compare_rules rules{2, false, 0, 0, 0};

  comparison run() {
    return compare_results(before, expected, actual, raw,
                           {mem_before, mem_expected, mem_actual, sizeof mem_actual, 0x1000},
                           rules);
  }
};

TEST(Compare, NamesTheElementTheRegisterAndBothValues) {
  compared c;
  EXPECT_TRUE(c.run().equal);
  c.expected.z[3][10] = 0x34;
  c.expected.z[3][11] = 0x12;
  c.actual.z[3][10] = 0x35;
  c.actual.z[3][11] = 0x12;
  c.rules.operand_z = 1u << 3 | 1u << 4;
  const comparison r = c.run();
  ASSERT_FALSE(r.equal);
  ASSERT_EQ(r.lines.size(), 1u);
  EXPECT_EQ(r.lines[0], "z3.h[5]: expected 0x1234, got 0x1235 (was 0x0; inputs z3 0x0, z4 0x0)");
}

TEST(Compare, CoversPredicatesFlagsScalarsAndMemory) {
  compared c;
  set_predicate_bit(c.expected.p[2], 7, true);
  c.actual.nzcv = 0x40000000;
  c.actual.x[30] = 1;
  c.actual.sp = 16;
  c.actual.fpsr = 0x10;
  c.mem_actual[40] = 0xee;
  c.raw.p[5][3] = 2; // a byte that is neither 0 nor 1
  const comparison r = c.run();
  ASSERT_FALSE(r.equal);
  std::string all;
  for (const std::string& l : r.lines) all += l + "\n";
  EXPECT_NE(all.find("p2: expected 0x000000000080, got 0x000000000000"), std::string::npos) << all;
  EXPECT_NE(all.find("p5 byte 3 holds 0x02"), std::string::npos) << all;
  EXPECT_NE(all.find("nzcv: expected nzcv, got nZcv"), std::string::npos) << all;
  EXPECT_NE(all.find("x30: expected 0x0, got 0x1"), std::string::npos) << all;
  EXPECT_NE(all.find("sp: expected 0x0, got 0x10"), std::string::npos) << all;
  EXPECT_NE(all.find("(IXC)"), std::string::npos) << all;
  EXPECT_NE(all.find("memory 0x1028 (area +0x28), 1 bytes: expected 00, got ee"), std::string::npos)
      << all;
}

TEST(Compare, FirstFaultLoadsAreHeldOnlyToWhatTheirDesignPromises) {
  compared c;
  c.rules = {4, true, 7, 0, 0};
  std::memset(c.before.ffr, 0x0f, predicate_bytes());
  std::memset(c.expected.ffr, 0x0f, predicate_bytes());
  std::memset(c.actual.ffr, 0x0f, predicate_bytes());
  // Element 1 (bytes 4..7) has its FFR bit clear: its value is not compared.
  c.actual.z[7][4] = 9;
  set_predicate_bit(c.actual.ffr, 0, false); // and FFR may clear other elements
  comparison r = c.run();
  EXPECT_TRUE(r.equal);
  EXPECT_TRUE(r.relaxed);
  // Element 0 was loaded on the reference only; not compared either.
  c.actual.z[7][0] = 1;
  EXPECT_TRUE(c.run().equal);
  // Loaded on both sides: compared.
  c.actual.z[7][8] = 1;
  r = c.run();
  EXPECT_FALSE(r.equal);
  // Another register is compared as always.
  c.actual.z[7][8] = 0;
  c.actual.z[6][4] = 1;
  EXPECT_FALSE(c.run().equal);
  c.actual.z[6][4] = 0;
  // A load never sets an FFR bit.
  set_predicate_bit(c.actual.ffr, 4, true);
  r = c.run();
  ASSERT_FALSE(r.equal);
  EXPECT_EQ(r.lines[0], "ffr: byte 4 was set by a load, which may only clear it");
}

TEST_F(Reference, DrawnWordsStayInTheirRowAndAddressesInTheTestArea) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  rng_t rng(7);
  const test_area& area = the_test_area();
  const uint64_t lo = reinterpret_cast<uint64_t>(area.begin);
  const uint64_t hi = reinterpret_cast<uint64_t>(area.unreadable) + area.page_bytes;
  for (int i = 0; i < count; ++i) {
    const row_profile p = profile_of(rows[i]);
    for (int k = 0; k < 20; ++k) {
      const uint32_t w = draw_word(rng, p);
      // A word the row reserves is drawn too, and then no row may take it.
      const bool reserved = word_is_reserved(kRowReservedRules[i], w);
      ASSERT_EQ(find_decode_row(w), reserved ? nullptr : &rows[i])
          << rows[i].name << " " << std::hex << w;
      machine_state m;
      draw_state(rng, p, w, area, &m);
      const unsigned n = (w >> 5) & 31;
      if (p.addr == addressing::scalar_imm || p.addr == addressing::scalar_index) {
        const uint64_t base = n == 31 ? m.sp : m.x[n];
        EXPECT_TRUE(base >= lo && base < hi) << rows[i].name;
        if (p.first_fault) {
          EXPECT_EQ(base % p.msize, 0u) << rows[i].name;
          EXPECT_TRUE(m.p[(w >> 10) & 7][0] & 1) << rows[i].name << ": element 0 inactive";
        }
      }
    }
  }
}

TEST(Profile, ReadsTheAddressFormFromTheName) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  unsigned by_page = 0;
  for (int i = 0; i < count; ++i) {
    const row_profile p = profile_of(rows[i]);
    // Every memory form (bit 31 set) has its address form known.
    EXPECT_EQ(p.addr != addressing::none, (p.value >> 31) != 0) << rows[i].name;
    if (decides_by_page(p)) ++by_page;
    if (std::strcmp(rows[i].name, "VecU64LoadFF4XSVZ") == 0) {
      EXPECT_EQ(p.addr, addressing::scalar_vector);
      EXPECT_TRUE(p.offset_32 && p.offset_signed && p.first_fault);
      EXPECT_EQ(p.msize, 4u);
      EXPECT_EQ(p.lane_bytes, 8u);
    }
    if (std::strcmp(rows[i].name, "VecS32LoadNT2VXZ") == 0) {
      EXPECT_EQ(p.addr, addressing::vector_scalar);
      EXPECT_EQ(p.msize, 2u);
      EXPECT_EQ(p.lane_bytes, 4u);
    }
    if (std::strcmp(rows[i].name, "VecU16LoadDup2OSSZ") == 0) {
      EXPECT_EQ(p.addr, addressing::scalar_index);
      EXPECT_EQ(p.msize, 2u);
    }
  }
  EXPECT_EQ(by_page, 16u + 16u + 64u); // LDNF1, contiguous LDFF1, first-fault gathers
  unsigned first_active = 0;
  for (int i = 0; i < count; ++i) first_active += needs_first_element_active(profile_of(rows[i]));
  EXPECT_EQ(first_active, 16u + 16u); // the gathers' element 0 is drawn freely
}

TEST(DesignDifferences, TheMarkersAreExactlyTheTwoReservedAdds) {
  EXPECT_TRUE(is_region_marker(0x2520e020));
  EXPECT_TRUE(is_region_marker(0x2520e05f));
  EXPECT_FALSE(is_region_marker(0x2520e060)); // imm8 3
  EXPECT_FALSE(is_region_marker(0x2560e020)); // halfword add
  int n = 0;
  const design_difference* d = design_differences(&n);
  for (int i = 0; i < n; ++i) EXPECT_GT(std::strlen(d[i].why), 40u) << d[i].tag;
}

} // namespace
