// The table of this compilation's thin decoders, in row order: the decode
// cascade finds a row, and the process's length picks the table.
#include "decoders.h"

namespace ZORVO_LENGTH {

namespace {
const sve_decoder kThinDecoders[] = {
#define THIN(family, map, key, name, shape, elem, handler, mnemonic) name,
#define BRIDGE(family, map, key, name, shape, elem, mnemonic) nullptr,
#define EMPTY(map, key, name, mnemonic) nullptr,
#include "forms.inc"
};
} // namespace

const sve_decoder* thin_decoders() { return kThinDecoders; }

} // namespace ZORVO_LENGTH
