// Runs single instruction words on this processor's own SVE unit, which is
// the reference the emulator is held against.
#pragma once

#include <cstddef>
#include <cstdint>

#include "machine.h"

enum class native_outcome {
  ran,
  undefined, // SIGILL: the architecture leaves the encoding undefined
  fault,     // SIGSEGV or SIGBUS
};

// The memory that memory forms are pointed at, and the page above it that
// cannot be read (first-fault and non-fault forms run into it). It lies
// below 4 GiB so that 32-bit vector elements can hold its addresses.
struct test_area {
  uint8_t* begin;
  size_t bytes;
  uint8_t* unreadable; // == begin + bytes, one page of no access
  size_t page_bytes;
};

// Maps the stub and the test area and installs the signal handling. Returns
// null, or what makes this process unfit to serve as the reference.
// SIGILL, SIGSEGV and SIGBUS stay ours from then on; outside a native run
// they go on to the action that was in place before (the emulator's own).
const char* native_init();

const test_area& the_test_area();

// Words run from the slots of one code page, written a batch at a time:
// writing over code that has already run is what costs most on an emulated
// reference, so that happens once per batch and not once per word.
constexpr unsigned kNativeSlots = 256;
void native_load_words(const uint32_t* words, unsigned count);

// Runs the word of a slot on the state and leaves the result there; on
// anything but `ran` the state is left as it was.
native_outcome run_native(unsigned slot, machine_state* state);

// The same for one word on its own.
native_outcome run_native_word(uint32_t word, machine_state* state);

// Where a slot's word runs, for the emulator's pc.
uint64_t native_word_address(unsigned slot);
