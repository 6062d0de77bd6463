#include "describe.h"

#include "decode/line_writer.h"
#include "forms_table.h"

size_t describe_operands(uint32_t word, char* buf, size_t size) {
  line_writer out(buf, size);
  const decode_row* row = find_decode_row(word);
  if (!row) {
    out.printf("no decode row");
  } else if (row->kind == DECODER_BRIDGE) {
    out.printf("generic");
    if (row->operands->describe) {
      out.printf(": ");
      row->operands->describe(out, word);
    }
  } else if (row->kind == DECODER_EMPTY) {
    out.printf("none");
  } else {
    row->operands->describe(out, word);
    if (row->operands->exchanges_fpsr) out.printf("; FPSR in and out");
  }
  return out.len;
}
