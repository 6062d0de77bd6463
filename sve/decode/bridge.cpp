#include "bridge.h"

PredV pack_predicate(const uint8_t bytes[kVectorBytes]) {
  PredV p{};
  for (unsigned i = 0; i < kVectorBytes; ++i) p.w[0] |= uint64_t(bytes[i] & 1) << i;
  return p;
}

void unpack_predicate(const PredV& p, uint8_t bytes[kVectorBytes]) {
  for (unsigned i = 0; i < kVectorBytes; ++i) bytes[i] = (p.w[0] >> i) & 1;
}

CpuContext enter_generic(const cpu_state* s) {
  CpuContext ctx;
  ctx.vl = kVectorBytes / 8;
  ctx.nzcv = static_cast<uint32_t>(s->nzcv);
  ctx.fpsr = s->fpsr;
  ctx.fpcr = s->fpcr & kGenericFpcrMask;
  ctx.ffr = pack_predicate(s->ffr);
  return ctx;
}

// FPCR does not go back: no generic function changes it.
void leave_generic(cpu_state* s, const CpuContext& ctx) {
  s->nzcv = ctx.nzcv;
  s->fpsr = ctx.fpsr;
  unpack_predicate(ctx.ffr, s->ffr);
}
