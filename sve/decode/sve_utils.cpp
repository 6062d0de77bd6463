#include "sve_utils.h"

#include <atomic>

#include "decode_maps.inc"
#include "decoders.h"
#include "form_index.h"
#include "reserved_encodings.h"

#define DECLARE_THIN_DECODERS(bytes)                                                               \
  namespace fixed_##bytes {                                                                        \
    const sve_decoder* thin_decoders();                                                            \
  }
ZORVO_FIXED_LENGTHS(DECLARE_THIN_DECODERS)
#undef DECLARE_THIN_DECODERS

namespace {

const decode_map_info kMaps[kDecodeMapCount] = {
#define X(suffix) {"decode_map__" #suffix, form_index_detail::kLayouts[MAP_##suffix]},
    ZORVO_DECODE_MAPS(X)
#undef X
};

struct form {
  bool thin; // a thin decoder: it calls a fast handler and cannot fail
  sve_decoder decoder;
};

const form kForms[] = {
#define THIN(family, map, key, name, shape, elem, handler, mnemonic) {true, name},
#define BRIDGE(family, map, key, name, shape, elem, mnemonic) {false, name},
#define EMPTY(map, key, name, mnemonic) {false, sve_prefetch_nop},
#include "forms.inc"
};
static_assert(sizeof(kForms) / sizeof(kForms[0]) == kFormCount);
static_assert(sizeof(kRowReservedRules) / sizeof(kRowReservedRules[0]) == kFormCount);

// The thin decoders for the process's length: its own compilation where the
// length has one, else the one for any length.
const sve_decoder* thin_decoders_now() {
  switch (process_vector_bytes()) {
#define CASE(bytes)                                                                                \
  case bytes:                                                                                      \
    return fixed_##bytes::thin_decoders();
    ZORVO_FIXED_LENGTHS(CASE)
#undef CASE
  default:
    return any_length::thin_decoders();
  }
}

} // namespace

aarch64_decode_rc sve_prefetch_nop(cpu_state*, uint32_t) { return AARCH64_DECODE_OK; }

namespace {

// Building a block asks about each word several times (decoder, inline form,
// thin decoder, mix), and words recur across blocks and threads: a hit here
// is cheaper than a search. Each entry is one atomic
// value (a mark, the form + 1 and the word), so threads need no lock.
constexpr unsigned kFormCacheBits = 12;
std::atomic<uint64_t> form_cache[1u << kFormCacheBits];
constexpr uint64_t kCachedMark = uint64_t{1} << 63;

} // namespace

int find_form(uint32_t word) {
  std::atomic<uint64_t>& entry = form_cache[(word * 0x9e3779b1u) >> (32 - kFormCacheBits)];
  const uint64_t cached = entry.load(std::memory_order_relaxed);
  if ((cached & kCachedMark) && uint32_t(cached) == word)
    return int(uint32_t(cached >> 32) & 0x7fffffffu) - 1;
  int form = search_form_index(kFormIndex, word);
  // A word its row reserves is no row's: every tier refuses it, as the
  // processor does.
  if (form >= 0 && word_is_reserved(kRowReservedRules[form], word)) form = -1;
  entry.store(kCachedMark | uint64_t(uint32_t(form + 1)) << 32 | word, std::memory_order_relaxed);
  return form;
}

sve_decoder get_sve_handler(uint32_t word) {
  const int form = find_form(word);
  if (form < 0) return nullptr;
  return kForms[form].thin ? thin_decoders_now()[form] : kForms[form].decoder;
}

bool form_is_thin(int form) { return kForms[form].thin; }

const decode_map_info* decode_maps() { return kMaps; }
