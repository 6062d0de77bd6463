// Bridge decoders. First-fault loads without a fast handler, and the
// replicating quadword loads.
#include "../generic/first_fault.h"
#include "../generic/load_quad.h"
#include "bridge_shapes_memory.h"

using namespace bridge_shapes;

// clang-format off
BRIDGE_DECODER(VecU16CLoadFF2LSSZ, zt_pgz_xn_xm, ELEM_H)
BRIDGE_DECODER(VecU32CLoadFF2LSSZ, zt_pgz_xn_xm, ELEM_S)
BRIDGE_DECODER(VecU64CLoadFF2LSSZ, zt_pgz_xn_xm, ELEM_D)
BRIDGE_DECODER(VecS16CLoadFF1LSSZ, zt_pgz_xn_xm, ELEM_H)
BRIDGE_DECODER(VecS32CLoadFF1LSSZ, zt_pgz_xn_xm, ELEM_S)
BRIDGE_DECODER(VecS32CLoadFF2LSSZ, zt_pgz_xn_xm, ELEM_S)
BRIDGE_DECODER(VecS64CLoadFF1LSSZ, zt_pgz_xn_xm, ELEM_D)
BRIDGE_DECODER(VecS64CLoadFF2LSSZ, zt_pgz_xn_xm, ELEM_D)
BRIDGE_DECODER(VecS64CLoadFF4LSSZ, zt_pgz_xn_xm, ELEM_D)

BRIDGE_DECODER(VecU8LoadDup1QSIZ, zt_pgz_xn_simm4, ELEM_B)
BRIDGE_DECODER(VecU16LoadDup2QSIZ, zt_pgz_xn_simm4, ELEM_H)
BRIDGE_DECODER(VecU32LoadDup4QSIZ, zt_pgz_xn_simm4, ELEM_S)
BRIDGE_DECODER(VecU64LoadDup8QSIZ, zt_pgz_xn_simm4, ELEM_D)
BRIDGE_DECODER(VecU8LoadDup1QSSZ, zt_pgz_xn_xm, ELEM_B)
BRIDGE_DECODER(VecU16LoadDup2QSSZ, zt_pgz_xn_xm, ELEM_H)
BRIDGE_DECODER(VecU32LoadDup4QSSZ, zt_pgz_xn_xm, ELEM_S)
BRIDGE_DECODER(VecU64LoadDup8QSSZ, zt_pgz_xn_xm, ELEM_D)
// clang-format on
