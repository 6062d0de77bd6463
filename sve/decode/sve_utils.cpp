#include "sve_utils.h"

#include <map>

#include "decode_maps.inc"
#include "decoders.h"

namespace {

enum map_index : uint8_t {
#define X(suffix) MAP_##suffix,
  ZORVO_DECODE_MAPS(X)
#undef X
};

const decode_map_info kMaps[kDecodeMapCount] = {
#define X(suffix) {"decode_map__" #suffix, parse_map_layout(#suffix)},
    ZORVO_DECODE_MAPS(X)
#undef X
};

const decode_row kRows[] = {
#define THIN(family, map, key, name, shape, elem, handler)                                         \
  {MAP_##map, key, name, #name, #handler, DECODER_THIN, &name##_operands},
#define THIN_FP THIN
#define BRIDGE(family, map, key, name, shape, elem)                                                \
  {MAP_##map, key, name, #name, "", DECODER_BRIDGE, &name##_operands},
#define EMPTY(map, key, name) {MAP_##map, key, sve_prefetch_nop, #name, "", DECODER_EMPTY, nullptr},
#include "forms.inc"
#undef THIN
#undef THIN_FP
#undef BRIDGE
#undef EMPTY
};
constexpr int kRowCount = sizeof(kRows) / sizeof(kRows[0]);

// Values are row indexes, so the tools can name what a lookup found.
std::map<int32_t, uint16_t> maps[kDecodeMapCount];

struct decode_unit_init {
  decode_unit_init() {
    for (int i = 0; i < kRowCount; ++i) maps[kRows[i].map].emplace(kRows[i].key, i);
  }
} init_at_load;

} // namespace

aarch64_decode_rc sve_prefetch_nop(cpu_state*, uint32_t) { return AARCH64_DECODE_OK; }

const decode_row* find_decode_row(uint32_t word) {
  for (int m = 0; m < kDecodeMapCount; ++m) {
    const auto it = maps[m].find(form_key(word, kMaps[m].layout));
    if (it != maps[m].end()) return &kRows[it->second];
  }
  return nullptr;
}

sve_decoder get_sve_handler(uint32_t word) {
  const decode_row* row = find_decode_row(word);
  return row ? row->decoder : nullptr;
}

const decode_map_info* decode_maps() { return kMaps; }

const decode_row* decode_rows(int* count) {
  *count = kRowCount;
  return kRows;
}

uint32_t row_value(const decode_map_info& m, int32_t key) {
  uint32_t k = static_cast<uint32_t>(key), value = 0;
  for (int i = m.layout.count - 1; i >= 0; --i) {
    const unsigned width = m.layout.ranges[i].hi - m.layout.ranges[i].lo + 1u;
    const uint32_t field = static_cast<uint32_t>(k & ((uint64_t{1} << width) - 1));
    value |= field << m.layout.ranges[i].lo;
    k = static_cast<uint32_t>(uint64_t{k} >> width);
  }
  return value;
}
