// Looking up a word's form: every row of the table found again, many times
// over and in other orders, with random bits where the row's pattern leaves
// them free, so that words meet in the lookup's memory of earlier answers.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <vector>

#include "decode/sve_utils.h"

namespace {

struct row_key {
  decode_map_id map;
  int32_t key;
};

const row_key kRows[] = {
#define THIN(family, map, key, ...) {MAP_##map, key},
#define BRIDGE(family, map, key, ...) {MAP_##map, key},
#define EMPTY(map, key, ...) {MAP_##map, key},
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
  // The pattern's own word is the row's, unless a map consulted earlier
  // takes it: most rows are found as themselves.
  int found_as_itself = 0;
  for (size_t r = 0; r < sizeof kRows / sizeof kRows[0]; ++r)
    found_as_itself += find_form(row_value(decode_maps()[kRows[r].map], kRows[r].key)) == int(r);
  EXPECT_GT(found_as_itself, int(kFormCount) * 9 / 10);
}

// The cascade spelled out plainly: each map in order, the word's key by the
// map's layout, the first row of that map with that key.
class plain_cascade {
public:
  plain_cascade() {
    for (size_t r = 0; r < sizeof kRows / sizeof kRows[0]; ++r)
      maps_[kRows[r].map].emplace(kRows[r].key, int(r));
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

TEST(FormLookup, AgreesWithThePlainCascadeOnRowsNearMissesAndRandomWords) {
  const plain_cascade plain;
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

  int hits = 0, misses = 0;
  for (uint32_t w : words) {
    const int expected = plain.find(w);
    ASSERT_EQ(find_form(w), expected) << std::hex << w;
    (expected < 0 ? misses : hits) += 1;
  }
  // Both answers are well represented, so agreement says something.
  EXPECT_GT(hits, int(kFormCount) * 20);
  EXPECT_GT(misses, 40000);
}

} // namespace
