#include "bridge.h"

#include "../handlers/predicate_form.h"

PredV to_pred_v(const uint8_t bytes[kVectorBytes]) {
  PredV p{};
  p.w[0] = pack_predicate(bytes);
  return p;
}

void from_pred_v(const PredV& p, uint8_t bytes[kVectorBytes]) { unpack_predicate(bytes, p.w[0]); }

CpuContext enter_generic(const cpu_state* s) {
  CpuContext ctx;
  ctx.vl = kVectorBytes / 8;
  ctx.nzcv = static_cast<uint32_t>(s->nzcv);
  ctx.fpsr = s->fpsr;
  ctx.fpcr = s->fpcr & kGenericFpcrMask;
  ctx.ffr = to_pred_v(s->ffr);
  return ctx;
}

// FPCR does not go back: no generic function changes it.
void leave_generic(cpu_state* s, const CpuContext& ctx) {
  s->nzcv = ctx.nzcv;
  s->fpsr = ctx.fpsr;
  from_pred_v(ctx.ffr, s->ffr);
}
