// The decode cascade: from an instruction word to the decoder that runs it.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "decode_maps.inc"

// Looks the word up in the decode maps in order; null when no row
// matches. Pure: called once per instruction when a block is rewritten.
sve_decoder get_sve_handler(uint32_t word);

// The index in forms.inc of the row that get_sve_handler picks for the word,
// or -1: also for a word inside a row's pattern that the row's encoding
// reserves (reserved_encodings.h).
int find_form(uint32_t word);

// Whether that row's decoder is a thin one, which calls a fast handler and
// returns its result; the rewriter calls those without checking it.
bool form_is_thin(int form);

// How a map's name turns a word into a key: its bit ranges, high part first.
struct key_range {
  uint8_t hi, lo;
};
struct map_layout {
  key_range ranges[4];
  uint8_t count;
  uint8_t bits; // total key width
};

// Parses a map suffix such as "31_21__15_13__4_4".
constexpr map_layout parse_map_layout(const char* s) {
  map_layout l{};
  auto number = [&s]() {
    uint8_t v = 0;
    while (*s >= '0' && *s <= '9') v = static_cast<uint8_t>(v * 10 + (*s++ - '0'));
    return v;
  };
  while (*s) {
    key_range r{};
    r.hi = number();
    ++s; // '_'
    r.lo = number();
    l.ranges[l.count++] = r;
    l.bits = static_cast<uint8_t>(l.bits + r.hi - r.lo + 1);
    while (*s == '_') ++s;
  }
  return l;
}

constexpr int32_t form_key(uint32_t word, const map_layout& l) {
  uint64_t key = 0;
  for (int i = 0; i < l.count; ++i) {
    const unsigned width = l.ranges[i].hi - l.ranges[i].lo + 1u;
    key = (key << width) | ((word >> l.ranges[i].lo) & ((uint64_t{1} << width) - 1));
  }
  return static_cast<int32_t>(static_cast<uint32_t>(key));
}

// The bits a map's key is made of, and the word bits a key stands for.
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

enum decode_map_id : uint8_t {
#define X(suffix) MAP_##suffix,
  ZORVO_DECODE_MAPS(X)
#undef X
      kDecodeMapCount
};

// The rows of forms.inc, counted.
constexpr int kFormCount = 0
#define THIN(...) +1
#define BRIDGE(...) +1
#define EMPTY(...) +1
#include "forms.inc"
    ;

// ---- For tools and tests; the running system needs none of it. ----

struct decode_map_info {
  const char* name; // "decode_map__31_13"
  map_layout layout;
};
const decode_map_info* decode_maps();

// The fixed-bit mask and value of a row's pattern.
inline uint32_t row_mask(const decode_map_info& m) { return layout_mask(m.layout); }
inline uint32_t row_value(const decode_map_info& m, int32_t key) {
  return layout_value(m.layout, key);
}
