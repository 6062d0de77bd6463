#include "machine.h"

#include <cstring>

void unpack_predicate(const uint8_t* packed, uint8_t* bytes) {
  for (unsigned i = 0; i < vector_bytes(); ++i) bytes[i] = predicate_bit(packed, i);
}

void pack_predicate(const uint8_t* bytes, uint8_t* packed) {
  for (unsigned i = 0; i < vector_bytes(); ++i) set_predicate_bit(packed, i, bytes[i] & 1);
}

void to_cpu_state(const machine_state& m, cpu_state* s) {
  std::memcpy(s->regs, m.x, sizeof m.x);
  s->regs[31] = m.sp;
  s->nzcv = m.nzcv;
  s->fpsr = static_cast<uint32_t>(m.fpsr);
  s->fpcr = static_cast<uint32_t>(m.fpcr);
  std::memcpy(s->z, m.z, sizeof m.z);
  for (unsigned n = 0; n < 16; ++n) unpack_predicate(m.p[n], s->p[n]);
  unpack_predicate(m.ffr, s->ffr);
}

void from_cpu_state(const cpu_state& s, machine_state* m) {
  std::memcpy(m->x, s.regs, sizeof m->x);
  m->sp = s.regs[31];
  m->nzcv = s.nzcv;
  m->fpsr = s.fpsr;
  m->fpcr = s.fpcr;
  std::memcpy(m->z, s.z, sizeof m->z);
  for (unsigned n = 0; n < 16; ++n) pack_predicate(s.p[n], m->p[n]);
  pack_predicate(s.ffr, m->ffr);
}
