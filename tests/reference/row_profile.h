// What the reference check needs to know about a decode row to draw
// sensible cases for it: its pattern, its element kind and, for memory
// forms, how the address is formed.
#pragma once

#include <cstdint>

#include "forms/forms_table.h"

enum class addressing : uint8_t {
  none,          // not a memory form
  scalar_imm,    // Xn|SP + immediate
  scalar_index,  // Xn|SP + Xm (scaled)
  vector_imm,    // each element of Zn + immediate
  vector_scalar, // each element of Zn + Xm
  scalar_vector, // Xn|SP + each element of Zm (extended, maybe scaled)
};

struct row_profile {
  const decode_row* row;
  uint32_t mask;       // the bits the row fixes
  uint32_t value;      // their values
  unsigned elem_bytes; // container of the element kind: 1 for predicates, 16 for quadwords
  bool floating;       // half, single or double elements
  addressing addr;
  unsigned msize;      // bytes of one memory element
  unsigned registers;  // structured forms: registers in the list, 2 to 4; else 1
  unsigned lane_bytes; // vector forms: bytes of each base or offset element
  bool offset_32;      // vector offsets: only the low 32 bits count
  bool offset_signed;  // vector offsets are sign-extended
  bool offset_scaled;  // vector offsets count memory elements, not bytes
  bool first_fault;    // first-fault or non-fault: may meet the unreadable page
  bool contiguous;     // a plain contiguous load or store: may meet it too
  // A conversion from half or single in the low bits of a wider element:
  // the source's bytes; else elem_bytes.
  unsigned source_bytes;
};

row_profile profile_of(const decode_row& row);
