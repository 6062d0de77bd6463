// The renaming of plain data-processing words onto the register record:
// which record registers are loaded, which is stored, and whether NZCV is.
// The end-to-end program e2e_plain_words_and_loops runs them; this pins the
// cases of register 31, whose meaning differs from class to class.
#include <gtest/gtest.h>

#include "client/record_words.h"

namespace {

struct expected_plan {
  uint32_t word, renamed;
  int rn, rm, rd_in, store;
  bool flags;
};

TEST(RecordWords, RegisterFieldsBecomeScratchRegistersWithTheirMeaningOf31) {
  const expected_plan cases[] = {
      // add x1, x2, #3 -> add x11, x9, #3
      {0x91000c41, 0x91000d2b, 2, -1, -1, 1, false},
      // add sp, sp, #16: both fields are SP, the record's register 31
      {0x910043ff, 0x9100412b, 31, -1, -1, 31, false},
      // adds xzr, x1, #1 (cmn): Rd 31 is XZR, nothing stored, flags kept
      {0xb100043f, 0xb100053f, 1, -1, -1, -1, true},
      // orr x3, xzr, x4 (mov): Rn 31 is XZR and stays
      {0xaa0403e3, 0xaa0a03eb, -1, 4, -1, 3, false},
      // ands w5, w6, #0xff: flags; W form
      {0x72001cc5, 0x72001d2b, 6, -1, -1, 5, true},
      // movk x7, #0xbeef, lsl #16: Rd is read as well
      {0xf2b7dde7, 0xf2b7ddeb, -1, -1, 7, 7, false},
      // bfi x18, x19, #8, #12 (bfm): Rd read, Rn read
      {0xb3782e72, 0xb3782d2b, 19, -1, 18, 18, false},
      // add x23, x24, w25, sxtw #2: extended register
      {0x8b39cb17, 0x8b2ac92b, 24, 25, -1, 23, false},
      // add x0, sp, w1, uxtw: extended register reads SP in Rn
      {0x8b2143e0, 0x8b2a412b, 31, 1, -1, 0, false},
  };
  for (const expected_plan& c : cases) {
    record_word_plan plan;
    ASSERT_TRUE(plan_record_word(c.word, &plan)) << std::hex << c.word;
    EXPECT_EQ(plan.word, c.renamed) << std::hex << c.word;
    EXPECT_EQ(plan.loads[0], c.rn) << std::hex << c.word;
    EXPECT_EQ(plan.loads[1], c.rm) << std::hex << c.word;
    EXPECT_EQ(plan.loads[2], c.rd_in) << std::hex << c.word;
    EXPECT_EQ(plan.store, c.store) << std::hex << c.word;
    EXPECT_EQ(plan.sets_flags, c.flags) << std::hex << c.word;
  }
}

TEST(RecordWords, OtherWordsAreLeftAlone) {
  record_word_plan plan;
  for (uint32_t word : {0xd503201fu /* nop */, 0xf9400020u /* ldr x0, [x1] */,
                        0x54ffff81u /* b.ne */, 0x9a820020u /* csel */, 0x04a20020u /* SVE */})
    EXPECT_FALSE(plan_record_word(word, &plan)) << std::hex << word;
}

} // namespace
