// Plain data-processing words (add, sub, logical, move wide, bitfield) that
// the runtime lets into a block between SVE words. Inside a run the
// application's registers live in the thread's record, so such a word runs
// there: its register fields are renamed to scratch registers that are loaded
// from the record before it and stored back after it.
#pragma once

#include <cstdint>

// Scratch registers of the rewritten word: Rn, Rm and Rd in that order.
constexpr int kRecordScratch[3] = {9, 10, 11};

struct record_word_plan {
  uint32_t word;   // the word with its register fields renamed
  int8_t loads[3]; // the record register each scratch register starts as, or -1
  int8_t store;    // the record register that gets Rd's scratch, or -1
  bool sets_flags; // NZCV goes back to the record after the word
};

// False when the word is not one of these classes.
bool plan_record_word(uint32_t word, record_word_plan* plan);
