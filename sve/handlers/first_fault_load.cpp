// Contiguous loads that survive a bad address: LDNF1 (non-fault, immediate
// offset) and the fast LDFF1 forms (first-fault, scaled index). Each asks
// beforehand whether a page can be read and records what it could not load
// by clearing bytes of FFR; the reads themselves are plain. Elements that are
// not loaded keep the old contents of Zt, and the trace tells the access as
// an LD1 would, unreadable elements included.
#include <cstring>

#include "../memory/sve_fault.h"
#include "../state/cpu_state.h"
#include "contiguous.h"

namespace ZORVO_LENGTH {

namespace {

bool readable_at(uint64_t addr) { return addr_is_readable<char>(reinterpret_cast<char*>(addr)); }

// Offsets within a page, compared as signed numbers.
int32_t page_offset(uint64_t addr) { return static_cast<int32_t>(addr & (page_size - 1)); }

// One probe at the start, and one more whenever an active element's offset
// is not above that of the last probe: the element has entered a new page
// (or is element 0 itself, which is probed again).
template <typename T, typename U>
aarch64_decode_rc non_fault_load(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, uint64_t addr) {
  uint8_t* pred = s->p[pg.num];
  uint8_t* z = s->z[zt.num];
  bool readable = readable_at(addr);
  int32_t probed_offset = page_offset(addr);
  for (unsigned i = 0; i < elements_of<U>(); ++i) {
    if (!active<U>(pred, i)) {
      store_elem<U>(z, i, U{0});
      continue;
    }
    const uint64_t at = addr + i * sizeof(T);
    if (page_offset(at) <= probed_offset) {
      readable = readable_at(at);
      probed_offset = page_offset(at);
    }
    if (readable)
      store_elem<U>(z, i, static_cast<U>(read_app<T>(at)));
    else
      std::memset(s->ffr + i * sizeof(U), 0, sizeof(U));
  }
  memtrace_lin<T, U>(s, reinterpret_cast<T*>(addr), reinterpret_cast<char*>(pred), memaccess_load);
  return AARCH64_DECODE_OK;
}

// By page, not by element: the page of the start address is read unguarded.
// Only when the vector's span runs into the next page, and that page cannot
// be read, do the elements from the page end on stay unloaded; the count is
// of register elements, so widening forms stop short of the page end.
template <typename T, typename U>
aarch64_decode_rc first_fault_load(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg,
                                   uint64_t addr) {
  uint8_t* pred = s->p[pg.num];
  const unsigned bytes = vector_bytes();
  unsigned loaded = elements_of<U>();
  if (page_offset(addr) > page_offset(addr + bytes) && !readable_at(addr + page_size)) {
    const uint64_t to_page_end = page_size - (addr & (page_size - 1));
    loaded = static_cast<unsigned>(to_page_end < bytes ? to_page_end : bytes) / sizeof(U);
    std::memset(s->ffr + loaded * sizeof(U), 0, bytes - loaded * sizeof(U));
  }
  if (loaded == elements_of<U>() && sizeof(T) == sizeof(U) && within_one_page(addr) &&
      all_active<U>(pred))
    read_app_vector(s->z[zt.num], addr);
  else
    load_active_elements<T, U>(s->z[zt.num], pred, addr, loaded);
  memtrace_lin<T, U>(s, reinterpret_cast<T*>(addr), reinterpret_cast<char*>(pred), memaccess_load);
  return AARCH64_DECODE_OK;
}

} // namespace

#define NON_FAULT_FORM(name, T, U)                                                                 \
  aarch64_decode_rc name(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg xn,   \
                         int imm) {                                                                \
    return non_fault_load<T, U>(s, zt, pg, vector_offset_address<T, U>(s, xn, imm));               \
  }

#define FIRST_FAULT_FORM(name, T, U)                                                               \
  aarch64_decode_rc name(cpu_state* s, aarch64_z_reg zt, aarch64_p_reg pg, aarch64_i_rsp_reg xn,   \
                         aarch64_i_reg xm) {                                                       \
    return first_fault_load<T, U>(s, zt, pg, scaled_index_address<T>(s, xn, xm));                  \
  }

NON_FAULT_FORM(sve_ldnf1b_zpri, uint8_t, uint8_t)
NON_FAULT_FORM(sve_ldnf1b_h_zpri, uint8_t, uint16_t)
NON_FAULT_FORM(sve_ldnf1b_s_zpri, uint8_t, uint32_t)
NON_FAULT_FORM(sve_ldnf1b_d_zpri, uint8_t, uint64_t)
NON_FAULT_FORM(sve_ldnf1sb_h_zpri, int8_t, uint16_t)
NON_FAULT_FORM(sve_ldnf1sb_s_zpri, int8_t, uint32_t)
NON_FAULT_FORM(sve_ldnf1sb_d_zpri, int8_t, uint64_t)
NON_FAULT_FORM(sve_ldnf1h_zpri, uint16_t, uint16_t)
NON_FAULT_FORM(sve_ldnf1h_s_zpri, uint16_t, uint32_t)
NON_FAULT_FORM(sve_ldnf1h_d_zpri, uint16_t, uint64_t)
NON_FAULT_FORM(sve_ldnf1sh_s_zpri, int16_t, uint32_t)
NON_FAULT_FORM(sve_ldnf1sh_d_zpri, int16_t, uint64_t)
NON_FAULT_FORM(sve_ldnf1w_zpri, uint32_t, uint32_t)
NON_FAULT_FORM(sve_ldnf1w_d_zpri, uint32_t, uint64_t)
NON_FAULT_FORM(sve_ldnf1sw_d_zpri, int32_t, uint64_t)
NON_FAULT_FORM(sve_ldnf1d_zpri, uint64_t, uint64_t)

FIRST_FAULT_FORM(sve_ldff1b_scaled_zprr, uint8_t, uint8_t)
FIRST_FAULT_FORM(sve_ldff1b_h_scaled_zprr, uint8_t, uint16_t)
FIRST_FAULT_FORM(sve_ldff1b_s_scaled_zprr, uint8_t, uint32_t)
FIRST_FAULT_FORM(sve_ldff1b_d_scaled_zprr, uint8_t, uint64_t)
FIRST_FAULT_FORM(sve_ldff1w_scaled_zprr, uint32_t, uint32_t)
FIRST_FAULT_FORM(sve_ldff1w_d_scaled_zprr, uint32_t, uint64_t)
FIRST_FAULT_FORM(sve_ldff1d_scaled_zprr, uint64_t, uint64_t)

} // namespace ZORVO_LENGTH
