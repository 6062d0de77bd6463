// The decode table and the cascade: counts, disjointness, key formation and
// lookups of words assembled by GNU as.
#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "forms/forms_table.h"

namespace {

struct expected_map {
  const char* name;
  int rows;
};

// Rows per map, in the order the cascade consults them.
const expected_map kExpected[kDecodeMapCount] = {
    {"decode_map__31_0", 1},
    {"decode_map__31_9__4_0", 1},
    {"decode_map__31_4", 2},
    {"decode_map__31_14__9_9__4_0", 1},
    {"decode_map__31_9__4_4", 13},
    {"decode_map__31_10__4_4", 8},
    {"decode_map__31_9", 58},
    {"decode_map__31_13__9_6", 24},
    {"decode_map__31_21__15_10__4_0", 4},
    {"decode_map__31_10", 38},
    {"decode_map__31_13__9_8", 4},
    {"decode_map__31_11", 1},
    {"decode_map__31_24__21_10", 1},
    {"decode_map__31_20__15_9__4_4", 24},
    {"decode_map__31_14__9_9__4_4", 8},
    {"decode_map__31_13__4_4", 18},
    {"decode_map__31_13__9_9", 4},
    {"decode_map__31_14__9_9", 4},
    {"decode_map__31_19__15_10", 6},
    {"decode_map__31_24__21_21__19_10", 1},
    {"decode_map__31_13", 403},
    {"decode_map__31_17__15_13", 3},
    {"decode_map__31_14", 32},
    {"decode_map__31_23__21_13", 4},
    {"decode_map__31_20__15_10", 65},
    {"decode_map__31_24__21_21__18_10", 1},
    {"decode_map__31_21__15_10__4_4", 32},
    {"decode_map__31_24__21_21__17_10", 1},
    {"decode_map__31_21__15_10", 135},
    {"decode_map__31_21__15_11", 2},
    {"decode_map__31_20__15_14__9_9__4_4", 19},
    {"decode_map__31_24__21_21__16_10", 1},
    {"decode_map__31_23__21_21__15_10", 6},
    {"decode_map__31_21__15_13__4_4", 131},
    {"decode_map__31_21__15_12", 2},
    {"decode_map__31_20__15_13", 81},
    {"decode_map__31_21__15_13", 285},
    {"decode_map__31_20__15_14", 8},
    {"decode_map__31_18", 4},
    {"decode_map__31_22__15_13__4_4", 6},
    {"decode_map__31_21__15_14", 4},
    {"decode_map__31_21__13_13__4_4", 16},
    {"decode_map__31_22__15_13", 18},
    {"decode_map__31_21__15_15", 3},
};

TEST(DecodeTable, MapsHoldTheirRowsInCascadeOrder) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  ASSERT_EQ(count, 1483);
  int per_map[kDecodeMapCount] = {};
  int kinds[3] = {};
  for (int i = 0; i < count; ++i) {
    ++per_map[rows[i].map];
    ++kinds[rows[i].kind];
  }
  int previous_bits = 33;
  for (int m = 0; m < kDecodeMapCount; ++m) {
    EXPECT_STREQ(decode_maps()[m].name, kExpected[m].name);
    EXPECT_EQ(per_map[m], kExpected[m].rows) << kExpected[m].name;
    // Most specific first, so a lookup of an unknown word ends in the small maps.
    EXPECT_LE(decode_maps()[m].layout.bits, previous_bits) << kExpected[m].name;
    previous_bits = decode_maps()[m].layout.bits;
  }
  EXPECT_EQ(kinds[DECODER_THIN], 803);
  EXPECT_EQ(kinds[DECODER_BRIDGE], 644);
  EXPECT_EQ(kinds[DECODER_EMPTY], 36);
}

TEST(DecodeTable, EveryRowLiesInTheSveSpaceAndNoWordMatchesTwoRows) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  std::vector<uint32_t> mask(count), value(count);
  for (int i = 0; i < count; ++i) {
    const decode_map_info& m = decode_maps()[rows[i].map];
    mask[i] = row_mask(m);
    value[i] = row_value(m, rows[i].key);
    EXPECT_EQ(mask[i] & 0x1e000000u, 0x1e000000u) << rows[i].name;
    EXPECT_EQ(value[i] & 0x1e000000u, 0x04000000u) << rows[i].name;
    EXPECT_EQ(form_key(value[i], m.layout), rows[i].key) << rows[i].name;
  }
  for (int i = 0; i < count; ++i)
    for (int j = i + 1; j < count; ++j)
      EXPECT_NE((value[i] ^ value[j]) & mask[i] & mask[j], 0u)
          << rows[i].name << " and " << rows[j].name << " overlap";
}

TEST(DecodeTable, DecoderNamesAreUnique) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  std::set<std::string> names;
  for (int i = 0; i < count; ++i) EXPECT_TRUE(names.insert(rows[i].name).second) << rows[i].name;
}

TEST(KeyFormation, ConcatenatesRangesHighFirst) {
  const map_layout l = parse_map_layout("31_14__9_9__4_0");
  ASSERT_EQ(l.count, 3);
  EXPECT_EQ(l.bits, 24);
  // bits 31:14 = 0x2aaab, bit 9 = 1, bits 4:0 = 0x15; bits 13:10 and 8:5 are ignored.
  const uint32_t word = (0x2aaabu << 14) | (0xfu << 10) | (1u << 9) | (0xfu << 5) | 0x15u;
  EXPECT_EQ(form_key(word, l), static_cast<int32_t>((0x2aaabu << 6) | (1u << 5) | 0x15u));

  const map_layout four = parse_map_layout("31_20__15_14__9_9__4_4");
  ASSERT_EQ(four.count, 4);
  EXPECT_EQ(four.bits, 16);
  EXPECT_EQ(form_key(0xffffffffu, four), 0xffff);
  EXPECT_EQ(form_key(1u << 20, four), 1 << 4);
  EXPECT_EQ(form_key(1u << 14, four), 1 << 2);
  EXPECT_EQ(form_key(1u << 9, four), 1 << 1);
  EXPECT_EQ(form_key(1u << 4, four), 1);
}

TEST(KeyFormation, OnlyTheWholeWordMapHasNegativeKeys) {
  for (int m = 0; m < kDecodeMapCount; ++m) {
    const int32_t key = form_key(0x80000000u, decode_maps()[m].layout);
    if (m == 0)
      EXPECT_LT(key, 0);
    else
      EXPECT_GT(key, 0) << decode_maps()[m].name;
  }
}

const char* name_of(uint32_t word) {
  const decode_row* row = find_decode_row(word);
  return row ? row->name : "none";
}

TEST(Cascade, FindsWordsAssembledByGnuAs) {
  EXPECT_STREQ(name_of(0x2550c440), "VecPTestPZ");       // ptest p1, p2.b
  EXPECT_STREQ(name_of(0x0523c440), "VecU8SelVV");       // sel z0.b, p1, z2.b, z3.b
  EXPECT_STREQ(name_of(0x64822020), "VecF32FCMLAVVVM");  // fcmla z0.s, p0/m, z1.s, z2.s, #90
  EXPECT_STREQ(name_of(0x84408000), "VecU8LoadDup1SIZ"); // ld1rb {z0.b}, p0/z, [x0]
  EXPECT_STREQ(name_of(0x2420c450), "VecU8CmpFlgGTVIZ"); // cmphi p0.b, p1/z, z2.b, #3
  EXPECT_STREQ(name_of(0x05304041), "VecPUnpackLoP");    // punpklo p1.h, p2.b
  EXPECT_STREQ(name_of(0x04400d41), "VecU16AddVVM");     // add z1.h, p3/m, z1.h, z10.h
  EXPECT_STREQ(name_of(0x2560e243), "VecU16AddVIX");     // add z3.h, z3.h, #0x12, lsl #8
  EXPECT_STREQ(name_of(0x04e704c5), "VecU64SubVVX");     // sub z5.d, z6.d, z7.d
  EXPECT_STREQ(name_of(0xa541a020), "VecU32CLoad4SIZ");  // ld1w {z0.s}, p0/z, [x1, #1, mul vl]
  EXPECT_STREQ(name_of(0x25a21c20), "VecU32While8LTSS"); // whilelo p0.s, x1, x2
}

TEST(Cascade, WholeWordAndPartialKeys) {
  EXPECT_STREQ(name_of(0x252c9000), "VecPClearFFSR");
  EXPECT_EQ(get_sve_handler(0x252c9001), nullptr);
  for (uint32_t pn = 0; pn < 16; ++pn)
    EXPECT_STREQ(name_of(0x25289000 | pn << 5), "VecPWriteFFSRP");
}

TEST(Cascade, RowsMatchWhateverTheirFreeBitsHold) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  std::mt19937 rng(7);
  for (int i = 0; i < count; ++i) {
    const decode_map_info& m = decode_maps()[rows[i].map];
    for (int k = 0; k < 8; ++k) {
      const uint32_t word = row_value(m, rows[i].key) | (rng() & ~row_mask(m));
      EXPECT_EQ(find_decode_row(word), &rows[i]) << rows[i].name << " word " << std::hex << word;
    }
  }
}

TEST(Cascade, WordsOutsideTheSveSpaceFindNothing) {
  std::mt19937 rng(11);
  for (int i = 0; i < 200000; ++i) {
    uint32_t word = rng();
    if (((word >> 25) & 0xf) == 0x2) word ^= 1u << 27;
    ASSERT_EQ(get_sve_handler(word), nullptr) << std::hex << word;
  }
  EXPECT_EQ(get_sve_handler(0xd503201f), nullptr); // nop
  EXPECT_EQ(get_sve_handler(0x8b020020), nullptr); // add x0, x1, x2
}

} // namespace
