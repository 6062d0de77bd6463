#include "forms_table.h"

#include "decode/bridge_shapes.h"
#include "decode/bridge_shapes_fp.h"
#include "decode/bridge_shapes_memory.h"
#include "decode/bridge_shapes_sve2.h"
#include "decode/decoders.h"
#include "decode/shapes.h"

namespace {

template <typename Shape, uint32_t E, bool ExchangesFpsr>
const form_operands operands_of = {&Shape::template describe<E>, &Shape::notation, E,
                                   ExchangesFpsr};

#define THIN_ROW(map, key, name, shape, elem, handler, mnemonic, fpsr)                             \
  {MAP_##map, key,       name,         #name,                                                      \
   #handler,  #mnemonic, DECODER_THIN, &operands_of<shapes::shape, elem, fpsr>},
const decode_row kRows[] = {
#define THIN(family, map, key, name, shape, elem, handler, mnemonic)                               \
  THIN_ROW(map, key, name, shape, elem, handler, mnemonic, false)
#define THIN_FP(family, map, key, name, shape, elem, handler, mnemonic)                            \
  THIN_ROW(map, key, name, shape, elem, handler, mnemonic, true)
#define BRIDGE(family, map, key, name, shape, elem, mnemonic)                                      \
  {MAP_##map, key,       name,           #name,                                                    \
   "",        #mnemonic, DECODER_BRIDGE, &operands_of<bridge_shapes::shape, elem, false>},
#define EMPTY(map, key, name, mnemonic)                                                            \
  {MAP_##map, key, sve_prefetch_nop, #name, "", #mnemonic, DECODER_EMPTY, nullptr},
#include "decode/forms.inc"
};
static_assert(sizeof(kRows) / sizeof(kRows[0]) == kFormCount);

} // namespace

const decode_row* decode_rows(int* count) {
  *count = kFormCount;
  return kRows;
}

const decode_row* find_decode_row(uint32_t word) {
  const int form = find_form(word);
  return form < 0 ? nullptr : &kRows[form];
}
