#include "bridge.h"

#include "../handlers/predicate_form.h"

static_assert(sizeof(PredV::w) == sizeof(pred_bits::w));

PredV to_pred_v(const uint8_t* bytes) {
  const pred_bits bits = pack_predicate(bytes);
  PredV p;
  std::memcpy(p.w, bits.w, sizeof p.w);
  return p;
}

void from_pred_v(const PredV& p, uint8_t* bytes) {
  pred_bits bits;
  std::memcpy(bits.w, p.w, sizeof bits.w);
  unpack_predicate(bytes, bits);
}

CpuContext enter_generic(const cpu_state* s) {
  CpuContext ctx;
  ctx.vl = vector_bytes() / 8;
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
