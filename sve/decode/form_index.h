// The decode maps as one index computed while compiling: no nodes to build at
// load, no heap, and a search that consults only the maps that can hold the
// word. Only sve_utils.cpp includes it: the tables live in one object.
//
// Every map's key contains bits 31..21 and 15..13 of the word unless the map
// leaves some of them free. A word's bucket is those 14 bits. A row joins
// every bucket its pattern allows: its own value where its map fixes a
// bucket bit, either value where the map leaves it free. A word that a row
// matches therefore always lies in one of the row's buckets, so a search
// confined to the word's bucket finds every row the full search would find.
// Inside a bucket, rows are grouped by map in cascade order and sorted by key,
// so the first group whose key lookup hits is the first map that would hit.
#pragma once

#include <cstdint>

#include "sve_utils.h"

namespace form_index_detail {

constexpr uint32_t kBucketBits = 0xffe0e000u; // bits 31..21 and 15..13
constexpr unsigned kTopShift = 21;            // the first level: bits 31..21
constexpr unsigned kTopCount = 1u << (32 - kTopShift);
constexpr unsigned kSubShift = 13; // the second level: bits 15..13
constexpr unsigned kSubCount = 8;

struct row_key {
  uint8_t map;
  int32_t key;
};

constexpr row_key kRowKeys[] = {
#define THIN(family, map, key, ...) {MAP_##map, key},
#define BRIDGE(family, map, key, ...) {MAP_##map, key},
#define EMPTY(map, key, ...) {MAP_##map, key},
#include "forms.inc"
};
constexpr int kRowCount = sizeof kRowKeys / sizeof kRowKeys[0];

constexpr map_layout kLayouts[] = {
#define X(suffix) parse_map_layout(#suffix),
    ZORVO_DECODE_MAPS(X)
#undef X
};

constexpr uint32_t layout_mask(const map_layout& l) {
  uint32_t mask = 0;
  for (int i = 0; i < l.count; ++i)
    for (unsigned b = l.ranges[i].lo; b <= l.ranges[i].hi; ++b) mask |= 1u << b;
  return mask;
}

constexpr uint32_t layout_value(const map_layout& l, int32_t key) {
  uint64_t k = static_cast<uint32_t>(key);
  uint32_t value = 0;
  for (int i = l.count - 1; i >= 0; --i) {
    const unsigned width = l.ranges[i].hi - l.ranges[i].lo + 1u;
    value |= static_cast<uint32_t>(k & ((uint64_t{1} << width) - 1)) << l.ranges[i].lo;
    k >>= width;
  }
  return value;
}

// Calls visit(bucket bits) once for each bucket the row joins.
template <typename Visit> constexpr void for_each_bucket(const row_key& r, Visit&& visit) {
  const map_layout& l = kLayouts[r.map];
  const uint32_t fixed = layout_value(l, r.key) & kBucketBits & layout_mask(l);
  const uint32_t free = kBucketBits & ~layout_mask(l);
  uint32_t sub = free;
  while (true) {
    visit(fixed | sub);
    if (sub == 0) break;
    sub = (sub - 1) & free;
  }
}

constexpr int count_copies() {
  int n = 0;
  for (const row_key& r : kRowKeys) for_each_bucket(r, [&n](uint32_t) { ++n; });
  return n;
}
constexpr int kCopyCount = count_copies();

struct copy {
  uint32_t bucket; // the word's bucket bits
  uint8_t map;
  int32_t key;
  uint16_t form;
};

constexpr bool before(const copy& a, const copy& b) {
  if (a.bucket != b.bucket) return a.bucket < b.bucket;
  if (a.map != b.map) return a.map < b.map;
  if (a.key != b.key) return a.key < b.key;
  return a.form < b.form;
}

template <int N> struct copies { copy at[N]; };

template <int N> constexpr void sift_down(copies<N>& c, int root, int end) {
  while (2 * root + 1 < end) {
    int child = 2 * root + 1;
    if (child + 1 < end && before(c.at[child], c.at[child + 1])) ++child;
    if (!before(c.at[root], c.at[child])) return;
    const copy t = c.at[root];
    c.at[root] = c.at[child];
    c.at[child] = t;
    root = child;
  }
}

constexpr copies<kCopyCount> sorted_copies() {
  copies<kCopyCount> c{};
  int n = 0;
  for (int i = 0; i < kRowCount; ++i)
    for_each_bucket(kRowKeys[i], [&](uint32_t bucket) {
      c.at[n++] = {bucket, kRowKeys[i].map, kRowKeys[i].key, static_cast<uint16_t>(i)};
    });
  for (int i = kCopyCount / 2 - 1; i >= 0; --i) sift_down(c, i, kCopyCount);
  for (int end = kCopyCount - 1; end > 0; --end) {
    const copy t = c.at[0];
    c.at[0] = c.at[end];
    c.at[end] = t;
    sift_down(c, 0, end);
  }
  return c;
}
constexpr copies<kCopyCount> kSorted = sorted_copies();

struct counts {
  int tops = 0;   // distinct bits 31..21 among the buckets
  int groups = 0; // distinct (bucket, map)
};
constexpr counts count_tops_and_groups() {
  counts n{};
  for (int i = 0; i < kCopyCount; ++i) {
    const copy& c = kSorted.at[i];
    const bool new_bucket = i == 0 || kSorted.at[i - 1].bucket != c.bucket;
    n.tops += i == 0 || (kSorted.at[i - 1].bucket >> kTopShift) != (c.bucket >> kTopShift);
    n.groups += new_bucket || kSorted.at[i - 1].map != c.map;
  }
  return n;
}
constexpr counts kCounts = count_tops_and_groups();

} // namespace form_index_detail

// Sized exactly by the counts above.
template <int Tops, int Groups, int Copies> struct form_index {
  // 1 + the second-level block of a word's bits 31..21, or 0: no row.
  uint16_t top[form_index_detail::kTopCount];
  // Per bucket, its first group; one more entry ends the last bucket.
  uint16_t bucket_groups[Tops * form_index_detail::kSubCount + 1];
  uint8_t group_map[Groups];
  uint16_t group_rows[Groups + 1]; // a group's first row; one more ends the last
  int32_t keys[Copies];
  uint16_t forms[Copies];
};

namespace form_index_detail {

using index_type = form_index<kCounts.tops, kCounts.groups, kCopyCount>;
static_assert(kRowCount == kFormCount);
static_assert(kCopyCount < 0x10000 && kCounts.groups < 0x10000 && kCounts.tops < 0x10000,
              "row, group and block numbers are 16 bits wide");
static_assert(sizeof kLayouts / sizeof kLayouts[0] < 0x100, "map numbers are 8 bits wide");

constexpr index_type build_index() {
  index_type x{};
  int tops = 0, groups = 0;
  int bucket = -1;
  for (int i = 0; i < kCopyCount; ++i) {
    const copy& c = kSorted.at[i];
    const unsigned top = c.bucket >> kTopShift;
    if (x.top[top] == 0) x.top[top] = static_cast<uint16_t>(++tops);
    const int this_bucket = static_cast<int>((x.top[top] - 1u) * kSubCount +
                                             ((c.bucket >> kSubShift) & (kSubCount - 1)));
    const bool new_group =
        i == 0 || kSorted.at[i - 1].bucket != c.bucket || kSorted.at[i - 1].map != c.map;
    // Buckets between the previous one and this one are empty.
    while (bucket < this_bucket) x.bucket_groups[++bucket] = static_cast<uint16_t>(groups);
    if (new_group) {
      x.group_map[groups] = c.map;
      x.group_rows[groups] = static_cast<uint16_t>(i);
      ++groups;
    }
    x.keys[i] = c.key;
    x.forms[i] = c.form;
  }
  while (bucket < kCounts.tops * static_cast<int>(kSubCount))
    x.bucket_groups[++bucket] = static_cast<uint16_t>(groups);
  x.group_rows[groups] = static_cast<uint16_t>(kCopyCount);
  return x;
}

} // namespace form_index_detail

constexpr form_index_detail::index_type kFormIndex = form_index_detail::build_index();

// The row the cascade picks for the word, or -1.
inline int search_form_index(uint32_t word) {
  using namespace form_index_detail;
  const unsigned top = kFormIndex.top[word >> kTopShift];
  if (top == 0) return -1;
  const unsigned bucket = (top - 1) * kSubCount + ((word >> kSubShift) & (kSubCount - 1));
  for (unsigned g = kFormIndex.bucket_groups[bucket]; g < kFormIndex.bucket_groups[bucket + 1];
       ++g) {
    const int32_t key = form_key(word, kLayouts[kFormIndex.group_map[g]]);
    unsigned lo = kFormIndex.group_rows[g], hi = kFormIndex.group_rows[g + 1];
    while (lo < hi) { // the first row whose key is not below
      const unsigned mid = (lo + hi) / 2;
      if (kFormIndex.keys[mid] < key)
        lo = mid + 1;
      else
        hi = mid;
    }
    if (lo < kFormIndex.group_rows[g + 1] && kFormIndex.keys[lo] == key)
      return kFormIndex.forms[lo];
  }
  return -1;
}
