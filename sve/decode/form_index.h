// The decode maps as one index computed while compiling: no nodes to build at
// load, no heap, and a search that consults only the maps that can hold the
// word. Of the system only sve_utils.cpp includes it, so the tables live in
// one object; the tests build indexes of their own rows too.
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

template <const row_key* Rows, int RowCount> constexpr int count_copies() {
  int n = 0;
  for (int i = 0; i < RowCount; ++i) for_each_bucket(Rows[i], [&n](uint32_t) { ++n; });
  return n;
}
template <const row_key* Rows, int RowCount>
constexpr int kCopyCount = count_copies<Rows, RowCount>();

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

// Every row's copies, one per bucket it joins, in bucket, map, key, row order.
template <const row_key* Rows, int RowCount>
constexpr copies<kCopyCount<Rows, RowCount>> sorted_copies() {
  constexpr int count = kCopyCount<Rows, RowCount>;
  copies<count> c{};
  int n = 0;
  for (int i = 0; i < RowCount; ++i)
    for_each_bucket(Rows[i], [&](uint32_t bucket) {
      c.at[n++] = {bucket, Rows[i].map, Rows[i].key, static_cast<uint16_t>(i)};
    });
  for (int i = count / 2 - 1; i >= 0; --i) sift_down(c, i, count);
  for (int end = count - 1; end > 0; --end) {
    const copy t = c.at[0];
    c.at[0] = c.at[end];
    c.at[end] = t;
    sift_down(c, 0, end);
  }
  return c;
}
template <const row_key* Rows, int RowCount>
constexpr copies<kCopyCount<Rows, RowCount>> kSorted = sorted_copies<Rows, RowCount>();

struct counts {
  int tops = 0;   // distinct bits 31..21 among the buckets
  int groups = 0; // distinct (bucket, map)
};
template <int N> constexpr counts count_tops_and_groups(const copies<N>& sorted) {
  counts n{};
  for (int i = 0; i < N; ++i) {
    const copy& c = sorted.at[i];
    const bool new_bucket = i == 0 || sorted.at[i - 1].bucket != c.bucket;
    n.tops += i == 0 || (sorted.at[i - 1].bucket >> kTopShift) != (c.bucket >> kTopShift);
    n.groups += new_bucket || sorted.at[i - 1].map != c.map;
  }
  return n;
}
template <const row_key* Rows, int RowCount>
constexpr counts kCounts = count_tops_and_groups(kSorted<Rows, RowCount>);

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

// The index of a row list: Rows[i] is found as i.
template <const form_index_detail::row_key* Rows, int RowCount> constexpr auto build_form_index() {
  using namespace form_index_detail;
  constexpr int count = kCopyCount<Rows, RowCount>;
  constexpr counts sizes = kCounts<Rows, RowCount>;
  static_assert(count < 0x10000 && sizes.groups < 0x10000 && sizes.tops < 0x10000,
                "row, group and block numbers are 16 bits wide");
  static_assert(sizeof kLayouts / sizeof kLayouts[0] < 0x100, "map numbers are 8 bits wide");
  const copies<count>& sorted = kSorted<Rows, RowCount>;
  form_index<sizes.tops, sizes.groups, count> x{};
  int tops = 0, groups = 0;
  int bucket = -1;
  for (int i = 0; i < count; ++i) {
    const copy& c = sorted.at[i];
    const unsigned top = c.bucket >> kTopShift;
    if (x.top[top] == 0) x.top[top] = static_cast<uint16_t>(++tops);
    const int this_bucket = static_cast<int>((x.top[top] - 1u) * kSubCount +
                                             ((c.bucket >> kSubShift) & (kSubCount - 1)));
    const bool new_group =
        i == 0 || sorted.at[i - 1].bucket != c.bucket || sorted.at[i - 1].map != c.map;
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
  while (bucket < sizes.tops * static_cast<int>(kSubCount))
    x.bucket_groups[++bucket] = static_cast<uint16_t>(groups);
  x.group_rows[groups] = static_cast<uint16_t>(count);
  return x;
}

// The row the cascade would pick for the word among the index's rows, or -1.
template <typename Index> int search_form_index(const Index& index, uint32_t word) {
  using namespace form_index_detail;
  const unsigned top = index.top[word >> kTopShift];
  if (top == 0) return -1;
  const unsigned bucket = (top - 1) * kSubCount + ((word >> kSubShift) & (kSubCount - 1));
  for (unsigned g = index.bucket_groups[bucket]; g < index.bucket_groups[bucket + 1]; ++g) {
    const int32_t key = form_key(word, kLayouts[index.group_map[g]]);
    unsigned lo = index.group_rows[g], hi = index.group_rows[g + 1];
    while (lo < hi) { // the first row whose key is not below
      const unsigned mid = (lo + hi) / 2;
      if (index.keys[mid] < key)
        lo = mid + 1;
      else
        hi = mid;
    }
    if (lo < index.group_rows[g + 1] && index.keys[lo] == key) return index.forms[lo];
  }
  return -1;
}

// The index of forms.inc.
constexpr auto kFormIndex =
    build_form_index<form_index_detail::kRowKeys, form_index_detail::kRowCount>();
static_assert(form_index_detail::kRowCount == kFormCount);
