// Words that lie inside a row's pattern but that the architecture reserves:
// the processor raises an undefined-instruction exception for them, so they
// are not that row's words and no tier may carry them out. Each row's rule
// follows from its columns in forms.inc (shape, element size, name), worked
// out at compile time.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"
#include "../trace/roi_words.h"
#include "fields.h"
#include "immediates.h"
#include "names.h"

enum class reserved_rule : uint8_t {
  none,
  // add/sub/sqadd/.../dup/cpy (immediate) on bytes: bit 13 asks for a shift
  // by 8, which leaves nothing of a byte. The two region-of-interest markers
  // are such words on purpose and stay the byte add's.
  byte_shifted_immediate,
  // Contiguous loads, stores and prefetches with a scalar offset: Rm = 31
  // is reserved (first-fault loads are the exception, there it reads XZR).
  offset_register_31,
  // and/orr/eor (immediate) and dupm: imm13 that names no bitmask.
  invalid_bitmask,
};

constexpr reserved_rule row_reserved_rule(const char* shape, uint32_t elem, const char* name) {
  using namespace names;
  if (elem == ELEM_B && ends_with(shape, "imm8_shifted"))
    return reserved_rule::byte_shifted_immediate;
  if (ends_with(shape, "bitmask")) return reserved_rule::invalid_bitmask;
  const bool scalar_offset = same(shape, "zt_pgz_xn_xm") || same(shape, "zt_pg_xn_xm");
  if (scalar_offset && !contains(name, "LoadFF")) return reserved_rule::offset_register_31;
  return reserved_rule::none;
}

// Prefetch rows carry no shape; the scalar-plus-scalar ones end in "LSS".
constexpr reserved_rule prefetch_reserved_rule(const char* name) {
  return names::ends_with(name, "LSS") ? reserved_rule::offset_register_31 : reserved_rule::none;
}

constexpr bool word_is_reserved(reserved_rule rule, uint32_t word) {
  switch (rule) {
  case reserved_rule::none:
    return false;
  case reserved_rule::byte_shifted_immediate:
    return field(word, 13, 13) != 0 && !is_roi_marker_word(word);
  case reserved_rule::offset_register_31:
    return field(word, 20, 16) == 31;
  case reserved_rule::invalid_bitmask:
    return bitmask_reserved(field(word, 17, 17), field(word, 10, 5));
  }
  return false;
}

// Each row's rule, by its index in forms.inc.
inline constexpr reserved_rule kRowReservedRules[] = {
#define THIN(family, map, key, name, shape, elem, ...) row_reserved_rule(#shape, elem, #name),
#define BRIDGE(family, map, key, name, shape, elem, mnemonic)                                      \
  row_reserved_rule(#shape, elem, #name),
#define EMPTY(map, key, name, mnemonic) prefetch_reserved_rule(#name),
#include "forms.inc"
};
