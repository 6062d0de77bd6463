// The table of instruction forms as the tools and tests see it: each row of
// forms.inc with its names, its kind and what its operands look like. Built
// from the same rows as the decoders, in the same order, so a row's index is
// the one the lookup finds.
#pragma once

#include <cstdint>

#include "decode/sve_utils.h"
#include "form_operands.h"

enum decoder_kind : uint8_t { DECODER_THIN, DECODER_BRIDGE, DECODER_EMPTY };

struct decode_row {
  uint8_t map; // index into decode_maps(), in cascade order
  int32_t key;
  sve_decoder decoder;
  const char* name;     // "VecU16AddVVM"
  const char* handler;  // fast handler of a thin decoder, else ""
  const char* mnemonic; // the assembler's name: "ld1w"
  decoder_kind kind;
  const form_operands* operands; // thin and bridge decoders, else null
};

const decode_row* decode_rows(int* count);

// The row that get_sve_handler would pick for the word, or null.
const decode_row* find_decode_row(uint32_t word);
