// The decode table and the cascade: what no single row's reference check can
// see: the order of the maps, rows that overlap, key formation, and words
// that must find nothing.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "decode/reserved_encodings.h"
#include "forms/forms_table.h"

namespace {

TEST(DecodeTable, MapsAreConsultedMostSpecificFirstAndNoneIsEmpty) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  int per_map[kDecodeMapCount] = {};
  for (int i = 0; i < count; ++i) ++per_map[rows[i].map];
  int previous_bits = 33;
  for (int m = 0; m < kDecodeMapCount; ++m) {
    EXPECT_GT(per_map[m], 0) << decode_maps()[m].name;
    // Most specific first, so a lookup of an unknown word ends in the small maps.
    EXPECT_LE(decode_maps()[m].layout.bits, previous_bits) << decode_maps()[m].name;
    previous_bits = decode_maps()[m].layout.bits;
  }
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

TEST(Cascade, WholeWordAndPartialKeys) {
  EXPECT_STREQ(name_of(0x252c9000), "VecPClearFFSR");
  EXPECT_EQ(get_sve_handler(0x252c9001), nullptr);
  for (uint32_t pn = 0; pn < 16; ++pn)
    EXPECT_STREQ(name_of(0x25289000 | pn << 5), "VecPWriteFFSRP");
}

// Except where the row reserves the word: then no row takes it.
TEST(Cascade, RowsMatchWhateverTheirFreeBitsHold) {
  int count = 0;
  const decode_row* rows = decode_rows(&count);
  std::mt19937 rng(7);
  int reserved = 0;
  for (int i = 0; i < count; ++i) {
    const decode_map_info& m = decode_maps()[rows[i].map];
    for (int k = 0; k < 8; ++k) {
      const uint32_t word = row_value(m, rows[i].key) | (rng() & ~row_mask(m));
      const bool refused = word_is_reserved(kRowReservedRules[i], word);
      reserved += refused;
      EXPECT_EQ(find_decode_row(word), refused ? nullptr : &rows[i])
          << rows[i].name << " word " << std::hex << word;
    }
  }
  // Enough of both kinds that the exception is exercised too.
  EXPECT_GT(reserved, 20);
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
