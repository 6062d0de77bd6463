// Bridge decoders. The SVE2 integer forms, the int8 matrix forms and BF16.
#include "../generic/bf16.h"
#include "../generic/halving_saturating.h"
#include "../generic/int8_matrix.h"
#include "../generic/sve2_complex.h"
#include "../generic/sve2_crypto.h"
#include "../generic/sve2_fp.h"
#include "../generic/sve2_indexed.h"
#include "../generic/sve2_integer.h"
#include "../generic/sve2_permute.h"
#include "../generic/sve2_shift.h"
#include "../generic/sve2_shift_imm.h"
#include "../generic/sve2_unpredicated.h"
#include "../generic/widen_narrow.h"
#include "bridge_shapes_fp.h"
#include "bridge_shapes_sve2.h"

using namespace bridge_shapes;

#define DECODERS_bridge_sve2(...) __VA_ARGS__
#include "expand_decoders.h"
