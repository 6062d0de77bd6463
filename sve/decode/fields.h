// Operand fields of an instruction word, and the descriptors built from them.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"

constexpr uint32_t field(uint32_t word, unsigned hi, unsigned lo) {
  return (word >> lo) & ((1u << (hi - lo + 1)) - 1);
}

// An ordinary vector operand of element size e.
constexpr aarch64_z_reg z_operand(uint32_t word, unsigned hi, unsigned lo, uint32_t e) {
  return {field(word, hi, lo), e, kZNone, kZNone};
}

// A destructive vector operand (destination and first source) of size e.
constexpr aarch64_z_reg z_destructive(uint32_t word, unsigned hi, unsigned lo, uint32_t e) {
  return {field(word, hi, lo), kZNone, e, e};
}

// A predicate operand whose `elem` is a size, or the merging, zeroing or plain marks.
constexpr aarch64_p_reg p_operand(uint32_t word, unsigned hi, unsigned lo, uint32_t elem) {
  return {field(word, hi, lo), elem, kPNone, kPNone};
}
