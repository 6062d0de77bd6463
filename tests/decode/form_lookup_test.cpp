// Looking up a word's form: every row of the table found again, many times
// over and in other orders, with random bits where the row's pattern leaves
// them free, so that words meet in the lookup's memory of earlier answers.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "decode/form_index.h"
#include "decode/reserved_encodings.h"
#include "decode/sve_utils.h"

namespace {

struct row_key {
  decode_map_id map;
  int32_t key;
  const char* name;
};

const row_key kRows[] = {
#define THIN(family, map, key, name, ...) {MAP_##map, key, #name},
#define BRIDGE(family, map, key, name, ...) {MAP_##map, key, #name},
#define EMPTY(map, key, name, ...) {MAP_##map, key, #name},
#include "decode/forms.inc"
};

TEST(FormLookup, AnswersStayTheSameWhateverWasAskedBefore) {
  std::mt19937 random(24);
  std::vector<uint32_t> words;
  for (const row_key& r : kRows) {
    const decode_map_info& m = decode_maps()[r.map];
    for (int k = 0; k < 4; ++k)
      words.push_back(row_value(m, r.key) | (uint32_t(random()) & ~row_mask(m)));
  }
  // Words outside every row too: their answer (none) is remembered as well.
  for (int k = 0; k < 2000; ++k) words.push_back(uint32_t(random()));
  std::vector<int> first;
  for (uint32_t w : words) first.push_back(find_form(w));
  for (int round = 0; round < 3; ++round) {
    std::vector<size_t> order(words.size());
    for (size_t i = 0; i < order.size(); ++i) order[i] = i;
    std::shuffle(order.begin(), order.end(), random);
    for (size_t i : order) ASSERT_EQ(find_form(words[i]), first[i]) << std::hex << words[i];
  }
  // Rows do not overlap, so every row's own word is found as that row.
  int found_as_itself = 0;
  for (size_t r = 0; r < sizeof kRows / sizeof kRows[0]; ++r)
    found_as_itself += find_form(row_value(decode_maps()[kRows[r].map], kRows[r].key)) == int(r);
  EXPECT_EQ(found_as_itself, int(kFormCount));
}

// The cascade spelled out plainly: each map in order, the word's key by the
// map's layout, the first row of that map with that key.
class plain_cascade {
public:
  template <typename Row, size_t N> explicit plain_cascade(const Row (&rows)[N]) {
    for (size_t r = 0; r < N; ++r) maps_[rows[r].map].emplace(rows[r].key, int(r));
  }
  int find(uint32_t word) const {
    for (int m = 0; m < kDecodeMapCount; ++m) {
      const auto it = maps_[m].find(form_key(word, decode_maps()[m].layout));
      if (it != maps_[m].end()) return it->second;
    }
    return -1;
  }

private:
  std::map<int32_t, int> maps_[kDecodeMapCount];
};

// A row of the given map that holds the word.
constexpr form_index_detail::row_key row_of(decode_map_id map, uint32_t word) {
  return {map, form_key(word, form_index_detail::kLayouts[map])};
}

// Rows that overlap, as new forms may: the word 0x04a01234 lies in the
// patterns of five maps and twice in one, listed against the cascade's order.
constexpr form_index_detail::row_key kOverlapping[] = {
    row_of(MAP_31_18, 0x04a01234),               // bits 31..18
    row_of(MAP_31_13, 0x04a01234),               // bits 31..13
    row_of(MAP_31_24__21_21__16_10, 0x04a01234), // bits 23, 22 and 15..13 free
    row_of(MAP_31_0, 0x04a01234),                // the whole word
    row_of(MAP_31_0, 0x04a01234),                // the same key again
    row_of(MAP_31_14, 0x04a01234),               // bits 31..14
    row_of(MAP_31_24__21_21__16_10, 0x04e0f000), // another bucket, same map
    row_of(MAP_31_13, 0x8520e000),
};
constexpr auto kOverlappingIndex =
    build_form_index<kOverlapping, int(sizeof kOverlapping / sizeof kOverlapping[0])>();

TEST(FormLookup, OverlappingRowsGoToTheFirstMapInCascadeOrderThenTheFirstRow) {
  const plain_cascade plain(kOverlapping);
  EXPECT_EQ(search_form_index(kOverlappingIndex, 0x04a01234), 3);
  EXPECT_EQ(plain.find(0x04a01234), 3);
  std::mt19937 random(7);
  int distinct_answers[sizeof kOverlapping / sizeof kOverlapping[0] + 1] = {};
  for (int k = 0; k < 200000; ++k) {
    // Near a row's word: a few of its bits changed.
    const uint32_t near[] = {0x04a01234, 0x04e0f000, 0x8520e000};
    uint32_t word = near[random() % 3];
    for (int flips = random() % 4; flips > 0; --flips) word ^= 1u << (random() % 32);
    if (k % 2) word ^= uint32_t(random()) & 0x00dfffffu;
    const int expected = plain.find(word);
    ASSERT_EQ(search_form_index(kOverlappingIndex, word), expected) << std::hex << word;
    ++distinct_answers[expected + 1];
  }
  // Every row but the repeated key is somebody's answer, and so is none.
  for (int r = -1; r < int(sizeof kOverlapping / sizeof kOverlapping[0]); ++r)
    if (r != 4) {
      EXPECT_GT(distinct_answers[r + 1], 0) << r;
    }
  EXPECT_EQ(distinct_answers[4 + 1], 0);
}

TEST(FormLookup, AgreesWithThePlainCascadeOnRowsNearMissesAndRandomWords) {
  const plain_cascade plain(kRows);
  std::mt19937 random(2024);
  std::vector<uint32_t> words;
  for (const row_key& r : kRows) {
    const decode_map_info& m = decode_maps()[r.map];
    const uint32_t mask = row_mask(m), value = row_value(m, r.key);
    words.push_back(value);
    for (int k = 0; k < 24; ++k) words.push_back(value | (uint32_t(random()) & ~mask));
    // One fixed bit wrong: the word belongs to a neighbouring row or none.
    for (int k = 0; k < 4; ++k) {
      uint32_t flip;
      do flip = 1u << (random() % 32);
      while (!(flip & mask));
      words.push_back((value ^ flip) | (uint32_t(random()) & ~mask));
    }
  }
  for (int k = 0; k < 40000; ++k) words.push_back(uint32_t(random()));
  // Random words with bits 28..25 0010, where rows are dense.
  for (int k = 0; k < 40000; ++k)
    words.push_back((uint32_t(random()) & ~0x1e000000u) | 0x04000000u);

  int hits = 0, misses = 0, reserved = 0;
  for (uint32_t w : words) {
    int expected = plain.find(w);
    // A word its row reserves is nobody's.
    if (expected >= 0 && word_is_reserved(kRowReservedRules[expected], w)) {
      expected = -1;
      ++reserved;
    }
    ASSERT_EQ(find_form(w), expected) << std::hex << w;
    (expected < 0 ? misses : hits) += 1;
  }
  // Both answers are well represented, so agreement says something.
  EXPECT_GT(hits, int(kFormCount) * 20);
  EXPECT_GT(misses, 40000);
  EXPECT_GT(reserved, 200);
}

const char* name_of_form(int form) { return form < 0 ? "none" : kRows[form].name; }

// The two region-of-interest markers are reserved byte adds that stay the
// byte add's, for every register; every other shifted byte add is refused.
TEST(FormLookup, OnlyTheMarkerWordsAmongShiftedByteAddsAreFound) {
  for (uint32_t imm8 = 0; imm8 < 256; ++imm8)
    for (uint32_t zdn = 0; zdn < 32; ++zdn) {
      const uint32_t word = 0x2520e000 | imm8 << 5 | zdn;
      const bool marker = imm8 == 1 || imm8 == 2;
      EXPECT_STREQ(name_of_form(find_form(word)), marker ? "VecU8AddVIX" : "none")
          << std::hex << word;
    }
}

// Words assembled by hand, each beside the nearest word that is not reserved.
TEST(FormLookup, ReservedEncodingsInsideARowAreNoRowsWords) {
  struct pair {
    uint32_t reserved, allowed;
    const char* allowed_row;
  };
  const pair pairs[] = {
      // add z0.b, z0.b, #3, lsl #8 beside add z0.h, z0.h, #768
      {0x2520e060, 0x2560e060, "VecU16AddVIX"},
      // the stop marker (#2, lsl #8) is the byte add's; #4, lsl #8 is not
      {0x2520e080, 0x2520e047, "VecU8AddVIX"},
      // sqsub z3.b, z3.b, #2, lsl #8 beside sqsub z3.b, z3.b, #2
      {0x2526e043, 0x2526c043, "VecS8QSubVIX"},
      // mov z0.b, #1, lsl #8 (dup) beside mov z0.b, #1
      {0x2538e020, 0x2538c020, "VecS8DupI"},
      // mov z1.b, p2/z, #1, lsl #8 (cpy) beside the same without the shift
      {0x05122021, 0x05120021, "VecS8DupIZ"},
      // ld1b {z0.b}, p0/z, [x0, xzr] beside [x0, x1]
      {0xa41f4000, 0xa4014000, "VecU8CLoad1LSSZ"},
      // st1d {z0.d}, p0, [x0, xzr, lsl #3] beside [x0, x30, lsl #3]
      {0xe5ff4000, 0xe5fe4000, "VecU64CStore8LSSZ"},
      // ld1rqb {z0.b}, p0/z, [x0, xzr] beside [x0, x2]
      {0xa41f0000, 0xa4020000, "VecU8LoadDup1QSSZ"},
      // prfb pldl1keep, p0, [x0, xzr] beside [x0, x3]
      {0x841fc000, 0x8403c000, "VecU8Prefetch1LSS"},
      // ldff1b {z0.b}, p0/z, [x0, xzr] is allowed: there Rm = 31 reads zero
      {0, 0xa41f6000, "VecU8CLoadFF1LSSZ"},
      // and z0.d, z0.d with N = 0, imms = 111111 (no element) beside
      // and z0.b, z0.b, #0x55
      {0x058007e0, 0x05800780, "VecU64AndVIX"},
      // orr z0.d, z0.d with N = 1, imms = 111111 (a 64-bit run of ones) beside
      // orr z0.d, z0.d, #0x1
      {0x050207e0, 0x05020000, "VecU64OrVIX"},
      // dupm with a 2-bit element of two ones beside dupm z0.b, #0x55
      {0x05c007a0, 0x05c00780, "VecS64DupMaskI"},
  };
  for (const pair& p : pairs) {
    if (p.reserved) {
      EXPECT_EQ(find_form(p.reserved), -1)
          << std::hex << p.reserved << " found as " << name_of_form(find_form(p.reserved));
    }
    EXPECT_STREQ(name_of_form(find_form(p.allowed)), p.allowed_row) << std::hex << p.allowed;
  }
}

} // namespace
