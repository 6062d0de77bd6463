// Breaks and next-active: predicates that end, carry on or pass on a run of
// true elements. The break family works byte by byte, whatever size its
// operands were written at; pnext works at its element size.
#include "../state/cpu_state.h"
#include "predicate_scan.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

namespace {

constexpr bool kAfter = true, kBefore = false;
constexpr bool kSetFlags = true, kNoFlags = false;

// Walks the active bytes upward while no true byte of Pn has been seen:
// brka keeps the first true byte itself in the run, brkb stops before it.
// Bytes that Pg leaves inactive are 0 (zeroing) or keep Pd's byte (merging).
template <bool After>
aarch64_decode_rc break_at_first_true(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                      aarch64_p_reg pn) {
  const pred_bits g = pack_predicate(s->p[pg.num]);
  const int first = first_set(pack_predicate(s->p[pn.num]) & g);
  const pred_bits run =
      first < 0 ? g : bits_below(g, static_cast<unsigned>(first) + (After ? 1 : 0));
  vreg result;
  unpack_predicate(result.b, run);
  if (pg.elem != kPZeroing) // merging keeps Pd's whole bytes where Pg is inactive
    for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
      const lanes128<uint8_t> active_bytes = active_lanes<uint8_t>(s->p[pg.num], chunk);
      store_chunk<uint8_t>(result.b, chunk,
                           (load_chunk<uint8_t>(result.b, chunk) & active_bytes) |
                               (load_chunk<uint8_t>(s->p[pd.num], chunk) & ~active_bytes));
    }
  commit(s->p[pd.num], result);
  return AARCH64_DECODE_OK;
}

// True when Pn is true at the last byte that Pg makes active.
bool last_active_is_true(const uint8_t* g, const uint8_t* n) {
  const int last = last_active<uint8_t>(g);
  return last >= 0 && (n[last] & 1);
}

// Pdm stays as it is when the break was not taken in the partition before,
// and becomes all false when it was.
aarch64_decode_rc sve_brkn(cpu_state* s, aarch64_p_reg pdm, aarch64_p_reg pg, aarch64_p_reg pn,
                           bool set_flags) {
  uint8_t* d = s->p[pdm.num];
  if (!last_active_is_true(s->p[pg.num], s->p[pn.num])) std::memset(d, 0, vector_bytes());
  if (set_flags) write_flags(s, unmasked_flags<uint8_t>(d));
  return AARCH64_DECODE_OK;
}

// When the break was not taken before (Pn true at the last active byte of
// Pg), the active bytes are true up to, not including, the first active byte
// where Pm is true; otherwise the result is all false.
aarch64_decode_rc sve_brkpb(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                            aarch64_p_reg pm, bool set_flags) {
  const uint8_t* g = s->p[pg.num];
  const uint8_t* m = s->p[pm.num];
  vreg result{};
  if (last_active_is_true(g, s->p[pn.num])) {
    bool before_break = true;
    for (unsigned i = 0; i < vector_bytes(); ++i) {
      if (!(g[i] & 1)) continue;
      if (m[i] & 1) before_break = false;
      result.b[i] = before_break;
    }
  }
  if (set_flags)
    commit_with_flags<signed char>(s, s->p[pd.num], g, result);
  else
    commit(s->p[pd.num], result);
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_brka_ppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn) {
  return break_at_first_true<kAfter>(s, pd, pg, pn);
}
aarch64_decode_rc sve_brkb_ppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn) {
  return break_at_first_true<kBefore>(s, pd, pg, pn);
}

aarch64_decode_rc sve_brkn_ppp(cpu_state* s, aarch64_p_reg pdm, aarch64_p_reg pg,
                               aarch64_p_reg pn) {
  return sve_brkn(s, pdm, pg, pn, kNoFlags);
}
aarch64_decode_rc sve_brkns_ppp(cpu_state* s, aarch64_p_reg pdm, aarch64_p_reg pg,
                                aarch64_p_reg pn) {
  return sve_brkn(s, pdm, pg, pn, kSetFlags);
}

aarch64_decode_rc sve_brkpb_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg, aarch64_p_reg pn,
                                 aarch64_p_reg pm) {
  return sve_brkpb(s, pd, pg, pn, pm, kNoFlags);
}
aarch64_decode_rc sve_brkpbs_pppp(cpu_state* s, aarch64_p_reg pd, aarch64_p_reg pg,
                                  aarch64_p_reg pn, aarch64_p_reg pm) {
  return sve_brkpb(s, pd, pg, pn, pm, kSetFlags);
}

// The first element of Pv that is active after the last true element of
// Pdn becomes the only true one; past the end nothing is found and the
// result is all false. Flags test the result against Pv.
aarch64_decode_rc sve_pnext_pp(cpu_state* s, aarch64_p_reg pdn, aarch64_p_reg pv) {
  by_element_size(pdn.rw_elem, [&](auto t) {
    using T = decltype(t);
    const uint8_t* v = s->p[pv.num];
    vreg result{};
    for (int i = last_active<T>(s->p[pdn.num]) + 1; i < static_cast<int>(elements_of<T>()); ++i) {
      if (active<T>(v, static_cast<unsigned>(i))) {
        set_pred_elem<T>(result.b, static_cast<unsigned>(i), true);
        break;
      }
    }
    commit_with_flags<T>(s, s->p[pdn.num], v, result);
  });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
