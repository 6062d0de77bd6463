// Decoders as the tools see them: what they pass for words assembled by GNU
// as, read back through describe_operands; and what the reference check
// cannot see: the FPSR exchange around host floating point and the word
// kept in the record.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "decode/line_writer.h"
#include "decode/shapes.h"
#include "forms/describe.h"
#include "forms/forms_table.h"

namespace {

std::string describe(uint32_t word) {
  char text[512];
  describe_operands(word, text, sizeof text);
  return text;
}

const char* name_of(uint32_t word) {
  const decode_row* row = find_decode_row(word);
  return row ? row->name : "none";
}

struct expected_operands {
  uint32_t word;
  const char* decoder;
  const char* operands;
};

void check_all(const expected_operands* cases, size_t n) {
  for (size_t i = 0; i < n; ++i) {
    EXPECT_STREQ(name_of(cases[i].word), cases[i].decoder) << std::hex << cases[i].word;
    EXPECT_EQ(describe(cases[i].word), cases[i].operands) << std::hex << cases[i].word;
  }
}
#define CHECK_ALL(cases) check_all(cases, sizeof cases / sizeof cases[0])

TEST(Operands, WorkedExamples) {
  const expected_operands cases[] = {
      {0x04400d41, "VecU16AddVVM", "Z{1, 5, 1, 1} z1.h, P{3, 4, 7, 7} p3/m, Z{10, 1, 5, 5} z10.h"},
      {0x2560e243, "VecU16AddVIX", "Z{3, 5, 1, 1} z3.h, uimm8-shifted 0x1200 (4608)"},
      {0x2560c243, "VecU16AddVIX", "Z{3, 5, 1, 1} z3.h, uimm8-shifted 18"}, // no shift bit
      {0x058000a7, "VecU64AndVIX", "Z{7, 5, 3, 3} z7.d, bitmask(17:5) 0x0000003f0000003f"},
      {0x25f9ce02, "VecD64DupI",
       "Z{2, 3, 5, 5} z2.d, fp-dup {half 0x3c00, single 0x3f800000, double 0x3ff0000000000000}"},
      // fadd z0.d, p1/m, z0.d, z2.d
      {0x65c08440, "VecD64AddVVM",
       "Z{0, 5, 3, 3} z0.d, P{1, 4, 7, 7} p1/m, Z{2, 3, 5, 5} z2.d; FPSR in and out"},
  };
  CHECK_ALL(cases);
}

TEST(Operands, LaneIndexAtEverySize) {
  const expected_operands cases[] = {
      {0x05ff2020, "VecU8ExtDupVI", "Z{0, 0, 5, 5} z0.b, Z{1, 0, 5, 5} z1.b, lane-index 63"},
      {0x052120a4, "VecU8ExtDupVI", "Z{4, 0, 5, 5} z4.b, Z{5, 0, 5, 5} z5.b, lane-index 0"},
      {0x05fe2020, "VecU16ExtDupVI", "Z{0, 1, 5, 5} z0.h, Z{1, 1, 5, 5} z1.h, lane-index 31"},
      {0x05fc2020, "VecU32ExtDupVI", "Z{0, 2, 5, 5} z0.s, Z{1, 2, 5, 5} z1.s, lane-index 15"},
      {0x056c2062, "VecU32ExtDupVI", "Z{2, 2, 5, 5} z2.s, Z{3, 2, 5, 5} z3.s, lane-index 5"},
      {0x05f82020, "VecU64ExtDupVI", "Z{0, 3, 5, 5} z0.d, Z{1, 3, 5, 5} z1.d, lane-index 7"},
      // Index 3 of a quadword lies beyond a 384-bit vector; it is passed as it is.
      {0x05f02020, "VecU128ExtDupVI", "Z{0, 4, 5, 5} z0.q, Z{1, 4, 5, 5} z1.q, lane-index 3"},
  };
  CHECK_ALL(cases);
}

TEST(Operands, ShiftCountsAtEverySize) {
  const expected_operands cases[] = {
      {0x042f9020, "VecS8ShrVIX", "Z{0, 0, 5, 5} z0.b, Z{1, 0, 5, 5} z1.b, right-shift 1"},
      {0x04289020, "VecS8ShrVIX", "Z{0, 0, 5, 5} z0.b, Z{1, 0, 5, 5} z1.b, right-shift 8"},
      {0x04309020, "VecS16ShrVIX", "Z{0, 1, 5, 5} z0.h, Z{1, 1, 5, 5} z1.h, right-shift 16"},
      {0x04609020, "VecS32ShrVIX", "Z{0, 2, 5, 5} z0.s, Z{1, 2, 5, 5} z1.s, right-shift 32"},
      {0x04a09020, "VecS64ShrVIX", "Z{0, 3, 5, 5} z0.d, Z{1, 3, 5, 5} z1.d, right-shift 64"},
      {0x04ff9020, "VecS64ShrVIX", "Z{0, 3, 5, 5} z0.d, Z{1, 3, 5, 5} z1.d, right-shift 1"},
      {0x04289c20, "VecU8ShlVIX", "Z{0, 0, 5, 5} z0.b, Z{1, 0, 5, 5} z1.b, left-shift 0"},
      {0x042f9c20, "VecU8ShlVIX", "Z{0, 0, 5, 5} z0.b, Z{1, 0, 5, 5} z1.b, left-shift 7"},
      {0x043f9c20, "VecU16ShlVIX", "Z{0, 1, 5, 5} z0.h, Z{1, 1, 5, 5} z1.h, left-shift 15"},
      {0x047f9c20, "VecU32ShlVIX", "Z{0, 2, 5, 5} z0.s, Z{1, 2, 5, 5} z1.s, left-shift 31"},
      {0x04ff9c20, "VecU64ShlVIX", "Z{0, 3, 5, 5} z0.d, Z{1, 3, 5, 5} z1.d, left-shift 63"},
      // Predicated forms keep tsz low and imm3 in 9:5.
      {0x040087a5, "VecS16ShrVIM", "Z{5, 5, 1, 1} z5.h, P{1, 4, 7, 7} p1/m, right-shift 3"},
      {0x04408405, "VecS32ShrVIM", "Z{5, 5, 2, 2} z5.s, P{1, 4, 7, 7} p1/m, right-shift 32"},
      {0x040389a6, "VecU8ShlVIM", "Z{6, 5, 0, 0} z6.b, P{2, 4, 7, 7} p2/m, left-shift 5"},
      {0x04c38be6, "VecU64ShlVIM", "Z{6, 5, 3, 3} z6.d, P{2, 4, 7, 7} p2/m, left-shift 63"},
  };
  CHECK_ALL(cases);
}

TEST(Operands, SignedAndSplitImmediates) {
  const expected_operands cases[] = {
      {0x85a04020, "VecU64FillSI", "Z{0, 0, 5, 5} z0.b, S{1, 3} x1, simm9(21:16,12:10) -256"},
      {0xe59f5c5f, "VecU64SpillSI", "Z{31, 0, 5, 5} z31.b, S{2, 3} x2, simm9(21:16,12:10) 255"},
      {0xe59f1fe3, "VecPSpillSI", "P{3, 0, 7, 7} p3.b, S{31, 3} sp, simm9(21:16,12:10) 255"},
      {0x85bf1c8f, "VecPFillSI", "P{15, 0, 7, 7} p15.b, S{4, 3} x4, simm9(21:16,12:10) -1"},
      {0x05517000, "VecS16DupIM", "Z{0, 1, 5, 5} z0.h, P{1, 4, 7, 7} p1/m, simm8-shifted -32768"},
      {0x05920fe0, "VecS32DupIZ", "Z{0, 2, 5, 5} z0.s, P{2, 5, 7, 7} p2/z, simm8-shifted 127"},
      {0x25b8dfe0, "VecS32DupI", "Z{0, 2, 5, 5} z0.s, simm8-shifted -1"},
      {0x25f8f001, "VecS64DupI", "Z{1, 3, 5, 5} z1.d, simm8-shifted -32768"},
      {0x2530d000, "VecS8MulVIX", "Z{0, 5, 0, 0} z0.b, simm(12:5) -128"},
      {0x053f1c20, "VecU8SlideVI", "Z{0, 5, 0, 0} z0.b, Z{1, 0, 5, 5} z1.b, uimm(20:16,12:10) 255"},
      {0x04af4200, "VecS32IndexII", "Z{0, 2, 5, 5} z0.s, simm(9:5) -16, simm(20:16) 15"},
      {0x04ff4420, "VecS64IndexSI", "Z{0, 3, 5, 5} z0.d, R{1, 3, 4, 4} x1, simm(20:16) -1"},
      {0x243fc871, "VecU8CmpFlgGTVIZ",
       "P{1, 0, 7, 7} p1.b, P{2, 5, 7, 7} p2/z, Z{3, 0, 5, 5} z3.b, uimm(20:14) 127"},
      {0x25d02861, "VecS64CmpFlgLTVIZ",
       "P{1, 3, 7, 7} p1.d, P{2, 5, 7, 7} p2/z, Z{3, 3, 5, 5} z3.d, simm(20:16) -16"},
      {0x65d88400, "VecD64AddVIM",
       "Z{0, 5, 3, 3} z0.d, P{1, 4, 7, 7} p1/m, i1(5) 0; FPSR in and out"},
      {0x659a8420, "VecF32MulVIM",
       "Z{0, 5, 2, 2} z0.s, P{1, 4, 7, 7} p1/m, i1(5) 1; FPSR in and out"},
      {0x2579d7e0, "VecF16DupI", // fmov z0.h, #-31.0
       "Z{0, 1, 5, 5} z0.h, fp-dup {half 0xcfc0, single 0xc1f80000, double 0xc03f000000000000}"},
      {0x25b9c800, "VecF32DupI", // fmov z0.s, #0.125
       "Z{0, 2, 5, 5} z0.s, fp-dup {half 0x3000, single 0x3e000000, double 0x3fc0000000000000}"},
  };
  CHECK_ALL(cases);
}

TEST(Operands, PatternsAndScalarRegisters) {
  const expected_operands cases[] = {
      {0x04bfe0e3, "VecU32IncrVLSI", "R{3, 4, 3, 3} x3, uimm(9:5) 7, pattern-step 16"},
      {0x0420ffe3, "VecU8QDecrVL4SI", "R{3, 4, 2, 2} w3, uimm(9:5) 31, pattern-step 1"},
      {0x0432fc03, "VecU8QDecrVL8SI", "R{3, 4, 3, 3} x3, uimm(9:5) 0, pattern-step 3"},
      {0x0471c169, "VecU16IncrVLVI", "Z{9, 5, 1, 1} z9.h, uimm(9:5) 11, pattern-step 2"},
      {0x0531a483, "VecU8CondXBSV", "R{3, 4, 2, 2} w3, P{1, 6, 7, 7} p1, Z{4, 0, 5, 5} z4.b"},
      {0x05f1a483, "VecU64CondXBSV", "R{3, 4, 3, 3} x3, P{1, 6, 7, 7} p1, Z{4, 3, 5, 5} z4.d"},
      {0x25a30c41, "VecU32While4LTSS", "P{1, 2, 7, 7} p1.s, R{2, 2, 4, 4} w2, R{3, 2, 4, 4} w3"},
      {0x25a31c41, "VecU32While8LTSS", "P{1, 2, 7, 7} p1.s, R{2, 3, 4, 4} x2, R{3, 3, 4, 4} x3"},
      {0x043f541f, "VecS64AddVLX", "S{31, 3} sp, S{31, 3} sp, simm(10:5) -32"},
      {0x04bf53e0, "VecS64VLX", "R{0, 3, 4, 4} x0, simm(10:5) 31"},
      {0x04bf57ff, "VecS64VLX", "R{31, 3, 4, 4} xzr, simm(10:5) -1"},
      {0x05203be3, "VecU8DupS", "Z{3, 0, 5, 5} z3.b, S{31, 0} wsp"},
      {0x05e03be3, "VecU64DupS", "Z{3, 3, 5, 5} z3.d, S{31, 3} sp"},
      {0x0568b3e3, "VecU16DupSM", "Z{3, 1, 5, 5} z3.h, P{4, 4, 7, 7} p4/m, S{31, 1} wsp"},
      {0x25e0bdc0, "VecU64SCountP", "R{0, 3, 4, 4} x0, P{15, 6, 7, 7} p15, P{14, 3, 7, 7} p14.d"},
      {0x256c8883, "VecU16IncrSCountPS", "R{3, 4, 3, 3} x3, P{4, 1, 7, 7} p4.h"},
      {0x65c42445, "VecD64MaxNumReduceFV",
       "V{5} v5, P{1, 6, 7, 7} p1, Z{2, 3, 5, 5} z2.d; FPSR in and out"},
      {0x04012445, "VecU8AddReduceV", "V{5} v5, P{1, 6, 7, 7} p1, Z{2, 0, 5, 5} z2.b"},
  };
  CHECK_ALL(cases);
}

TEST(Operands, PredicatesAndMemory) {
  const expected_operands cases[] = {
      {0x05314041, "VecPUnpackHiP", "P{1, 1, 7, 7} p1.h, P{2, 0, 7, 7} p2.b"},
      {0x2599c483, "VecP32GenNextP", "P{3, 7, 2, 2} p3.s, P{4, 6, 7, 7} p4"},
      {0x251850a3, "VecPBreakNextPZ", "P{3, 7, 0, 0} p3.b, P{4, 5, 7, 7} p4/z, P{5, 0, 7, 7} p5.b"},
      {0x25034650, "VecPSelPP",
       "P{0, 0, 7, 7} p0.b, P{1, 6, 7, 7} p1, P{2, 0, 7, 7} p2.b, P{3, 0, 7, 7} p3.b"},
      {0x2550f9e0, "VecPTestPZ", "P{14, 6, 7, 7} p14, P{15, 0, 7, 7} p15.b"},
      {0x2518f041, "VecPActualP", "P{1, 0, 7, 7} p1.b, P{2, 5, 7, 7} p2/z"},
      {0x252c9000, "VecPClearFFSR", ""},
      {0xc5e3c440, "VecU64Load8SVZ",
       "Z{0, 3, 5, 5} z0.d, P{1, 5, 7, 7} p1/z, S{2, 3} x2, Z{3, 3, 5, 5} z3.d"},
      {0xc5634440, "VecU64Load4XSVZ",
       "Z{0, 3, 5, 5} z0.d, P{1, 5, 7, 7} p1/z, S{2, 3} x2, Z{3, 2, 5, 5} z3.s"},
      {0xe47fa460, "VecU32Store1VIZ",
       "Z{0, 2, 5, 5} z0.s, P{1, 6, 7, 7} p1, Z{3, 2, 5, 5} z3.s, uimm(20:16) 31"},
      {0x857fc440, "VecU32LoadDup4SIZ",
       "Z{0, 2, 5, 5} z0.s, P{1, 5, 7, 7} p1/z, S{2, 3} x2, uimm(21:16) 63"},
      {0xa408a440, "VecU8CLoad1SIZ",
       "Z{0, 0, 5, 5} z0.b, P{1, 5, 7, 7} p1/z, S{2, 3} x2, simm(19:16) -8"},
      {0x04902440, "VecU32MovePrefix1VZ",
       "Z{0, 2, 5, 5} z0.s, P{1, 5, 7, 7} p1/z, Z{2, 2, 5, 5} z2.s"},
      {0x65cba440, "VecD64ExtndFVM",
       "Z{0, 3, 5, 5} z0.d, P{1, 4, 7, 7} p1/m, Z{2, 2, 5, 5} z2.s; FPSR in and out"},
      {0x65caa440, "VecF64TruncDVM",
       "Z{0, 2, 5, 5} z0.s, P{1, 4, 7, 7} p1/m, Z{2, 3, 5, 5} z2.d; FPSR in and out"},
      {0x05723820, "VecU16UnpackLoV", "Z{0, 1, 5, 5} z0.h, Z{1, 0, 5, 5} z1.b"},
      {0x64836440, "VecF32FCMLAVVVM",
       "Z{0, 5, 2, 2} z0.s, P{1, 4, 7, 7} p1/m, Z{2, 2, 5, 5} z2.s, Z{3, 2, 5, 5} z3.s, "
       "uimm(14:13) 3; FPSR in and out"},
  };
  CHECK_ALL(cases);
}

TEST(Operands, GenericPrefetchAndUnknownWords) {
  EXPECT_EQ(describe(0x0416a020), // abs z0.b, p0/m, z1.b
            "generic: Z{0, 0, 5, 5} z0.b, P{0, 6, 7, 7} p0, Z{1, 0, 5, 5} z1.b -> z0");
  EXPECT_EQ(describe(0x0420e3ff), "generic: uimm(9:5) 31, uimm(19:16) 0 -> xzr"); // cntb xzr
  EXPECT_EQ(describe(0x655aa020), // fcvtzs z0.h, p0/m, z1.h
            "generic: Z{0, 1, 5, 5} z0.h, P{0, 6, 7, 7} p0, Z{1, 1, 5, 5} z1.h -> z0");
  EXPECT_EQ(describe(0x84200000), "none");          // prfb pldl1keep, p0, [x0, z0.s, uxtw]
  EXPECT_EQ(describe(0xd503201f), "no decode row"); // nop
  EXPECT_EQ(std::string(name_of(0x84200000)).find("Prefetch") != std::string::npos, true);
}

TEST(Describe, NeverWritesPastTheBufferAndReturnsWhatItWrote) {
  char full[512];
  const size_t length = describe_operands(0x04400d41, full, sizeof full);
  EXPECT_EQ(length, std::strlen(full));
  char small[11];
  std::memset(small, 'x', sizeof small);
  EXPECT_EQ(describe_operands(0x04400d41, small, 10), 9u);
  EXPECT_EQ(std::string(small, 9), std::string(full, 9));
  EXPECT_EQ(small[9], '\0');
  EXPECT_EQ(small[10], 'x');
  EXPECT_EQ(describe_operands(0x04400d41, small, 0), 0u);
  EXPECT_EQ(small[0], full[0]); // untouched
}

// ---- The decoder's own path, with handlers that record what they get ----

aarch64_sve_logical64_imm recorded_mask;
aarch64_decode_rc record_mask(cpu_state*, aarch64_z_reg, aarch64_sve_logical64_imm imm) {
  recorded_mask = imm;
  return AARCH64_DECODE_OK;
}

// The lookup refuses such a word; the decoder, reached directly, still
// ends normally with an empty mask rather than reading past its tables.
TEST(Decoders, ReservedLogicalImmediateEndsNormally) {
  // and z7.d, z7.d with N = 0 and imms all ones: no element width exists.
  const uint32_t word = 0x058007e7;
  static cpu_state s;
  recorded_mask.value = 1;
  EXPECT_EQ((shapes::zdn_bitmask::run<ELEM_D, record_mask, false>(&s, word)), AARCH64_DECODE_OK);
  EXPECT_EQ(recorded_mask.value, 0u);
  EXPECT_EQ(s.raw_instr, word);
  EXPECT_EQ(describe(word), "no decode row");
}

aarch64_decode_rc says_unimplemented(cpu_state*, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg) {
  return AARCH64_DECODE_UNIMPLEMENTED;
}

TEST(Decoders, StoreTheWordAndReturnWhatTheHandlerReturns) {
  static cpu_state s;
  s.raw_instr = 0xffffffffffffffffu;
  // fabs z0.s, p1/m, z2.s, through a handler that reports itself missing.
  EXPECT_EQ((shapes::zd_pgm_zn::run<ELEM_S, says_unimplemented, false>(&s, 0x049ca440)),
            AARCH64_DECODE_UNIMPLEMENTED);
  EXPECT_EQ(s.raw_instr, 0x049ca440u);
}

uint32_t fpsr_seen_by_handler;
aarch64_decode_rc divide_inexactly(cpu_state*, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg) {
  fpsr_seen_by_handler = read_host_fpsr();
  volatile double one = 1.0, three = 3.0;
  volatile double third = one / three; // raises inexact (IXC, bit 4)
  (void)third;
  return AARCH64_DECODE_OK;
}

TEST(Decoders, HostFloatingPointHandlersSeeTheApplicationsFpsrAndReturnTheirFlags) {
  static cpu_state s;
  s.fpsr = 0x1; // IOC, left over from earlier application code
  write_host_fpsr(0);
  EXPECT_EQ((shapes::zd_zn_zm::run<ELEM_D, divide_inexactly, true>(&s, 0x65c00000)),
            AARCH64_DECODE_OK);
  EXPECT_EQ(fpsr_seen_by_handler, 0x1u);
  EXPECT_EQ(s.fpsr, 0x11u); // IOC kept, IXC added

  // A real floating-point decoder puts the state's FPSR on the host.
  write_host_fpsr(0);
  s.fpsr = 0x9f;
  get_sve_handler(0x65c08440)(&s, 0x65c08440); // fadd z0.d, p1/m, z0.d, z2.d
  EXPECT_EQ(read_host_fpsr(), 0x9fu);
  EXPECT_EQ(s.fpsr, 0x9fu);

  // fabs raises nothing, so its decoder leaves the host alone.
  write_host_fpsr(0);
  get_sve_handler(0x049ca440)(&s, 0x049ca440);
  EXPECT_EQ(read_host_fpsr(), 0u);
  EXPECT_EQ(s.fpsr, 0x9fu);
}

} // namespace
