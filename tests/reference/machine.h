// A whole machine state in the architecture's own form, and its exchange
// with the emulator's register record.
#pragma once

#include <cstdint>

#include "state/cpu_state.h"
#include "state/vector_length.h"

// One bit per vector byte. A state has room for the longest vector; only the
// first vector_bytes() bytes of a Z register (and their bits) mean anything.
constexpr unsigned kMaxPredicateBytes = kMaxVectorBytes / 8;
inline unsigned predicate_bytes() { return vector_bytes() / 8; }

struct machine_state {
  uint64_t x[31];
  uint64_t sp;
  uint64_t nzcv; // N bit 31 .. V bit 28
  uint64_t fpsr;
  uint64_t fpcr;
  uint8_t z[32][kMaxVectorBytes];
  uint8_t p[16][kMaxPredicateBytes]; // bit i is vector byte i
  uint8_t ffr[kMaxPredicateBytes];
};

inline bool predicate_bit(const uint8_t* packed, unsigned i) {
  return (packed[i / 8] >> (i % 8)) & 1;
}
inline void set_predicate_bit(uint8_t* packed, unsigned i, bool on) {
  packed[i / 8] =
      static_cast<uint8_t>((packed[i / 8] & ~(1u << (i % 8))) | (on ? 1u << (i % 8) : 0));
}

// One byte per vector byte, each 0 or 1, from the packed bits and back; only
// bit 0 of a byte counts on the way back.
void unpack_predicate(const uint8_t* packed, uint8_t* bytes);
void pack_predicate(const uint8_t* bytes, uint8_t* packed);

void to_cpu_state(const machine_state& m, cpu_state* s);
void from_cpu_state(const cpu_state& s, machine_state* m);
