#include "record_words.h"

namespace {

enum class reg31 : uint8_t { none, zr, sp };

// What each of the fields Rn (9:5), Rm (20:16) and Rd (4:0) is in one class:
// not a register, or a register whose number 31 means XZR or SP.
struct word_class {
  uint32_t mask, value;
  reg31 rn, rm, rd;
};

constexpr word_class kClasses[] = {
    {0x1f800000, 0x11000000, reg31::sp, reg31::none, reg31::sp},   // add, sub (immediate)
    {0x1f800000, 0x12000000, reg31::zr, reg31::none, reg31::sp},   // logical (immediate)
    {0x1f800000, 0x12800000, reg31::none, reg31::none, reg31::zr}, // move wide
    {0x1f800000, 0x13000000, reg31::zr, reg31::none, reg31::zr},   // bitfield
    {0x1f000000, 0x0a000000, reg31::zr, reg31::zr, reg31::zr},     // logical (shifted register)
    {0x1f200000, 0x0b000000, reg31::zr, reg31::zr, reg31::zr},     // add, sub (shifted register)
    {0x1f200000, 0x0b200000, reg31::sp, reg31::zr, reg31::sp},     // add, sub (extended register)
};

constexpr int kFieldShift[3] = {5, 16, 0}; // Rn, Rm, Rd

} // namespace

bool plan_record_word(uint32_t word, record_word_plan* plan) {
  const word_class* c = nullptr;
  for (const word_class& k : kClasses)
    if ((word & k.mask) == k.value) c = &k;
  if (c == nullptr) return false;

  const uint32_t opc = word >> 29 & 3;
  const bool logical = c->value == 0x12000000 || c->value == 0x0a000000;
  // ands, adds and subs write the flags, and their Rd 31 is XZR.
  plan->sets_flags =
      logical ? opc == 3
              : (c->value & 0x1f000000) != 0x12000000 && c->value != 0x13000000 && (opc & 1);
  reg31 roles[3] = {c->rn, c->rm, plan->sets_flags ? reg31::zr : c->rd};
  // movk and bfm keep part of Rd: it is read as well as written.
  const bool reads_rd =
      (c->value == 0x12800000 && opc == 3) || (c->value == 0x13000000 && opc == 1);

  plan->word = word;
  plan->store = -1;
  for (int f = 0; f < 3; ++f) {
    plan->loads[f] = -1;
    if (roles[f] == reg31::none) continue;
    const int r = word >> kFieldShift[f] & 31;
    if (r == 31 && roles[f] == reg31::zr) continue;
    plan->word = (plan->word & ~(31u << kFieldShift[f])) | uint32_t(kRecordScratch[f])
                                                               << kFieldShift[f];
    const bool is_rd = f == 2;
    if (!is_rd || reads_rd) plan->loads[f] = static_cast<int8_t>(r);
    if (is_rd) plan->store = static_cast<int8_t>(r);
  }
  return true;
}
