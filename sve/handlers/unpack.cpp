// Unpacks: the low or high half of Zn, each element widened to twice its
// size. The sign-extending forms from bytes and halfwords run on the generic
// tier; each handler here is one conversion.
#include <cstdint>

#include "../state/cpu_state.h"
#include "element.h"

namespace ZORVO_LENGTH {

namespace {

constexpr bool kLowHalf = false, kHighHalf = true;

// From is signed for a sign-extending unpack, unsigned for a zero-extending one.
template <typename From, typename To>
aarch64_decode_rc unpack(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, bool high) {
  const uint8_t* n = s->z[zn.num] + (high ? vector_bytes() / 2 : 0);
  vreg out;
  for (unsigned i = 0; i < elements_of<To>(); ++i)
    store_elem<To>(out.b, i, static_cast<To>(load_elem<From>(n, i)));
  commit(s->z[zd.num], out);
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_uunpklo_b2h_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<uint8_t, uint16_t>(s, zd, zn, kLowHalf);
}
aarch64_decode_rc sve_uunpkhi_b2h_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<uint8_t, uint16_t>(s, zd, zn, kHighHalf);
}
aarch64_decode_rc sve_uunpklo_h2s_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<uint16_t, uint32_t>(s, zd, zn, kLowHalf);
}
aarch64_decode_rc sve_uunpkhi_h2s_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<uint16_t, uint32_t>(s, zd, zn, kHighHalf);
}
aarch64_decode_rc sve_uunpklo_s2d_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<uint32_t, uint64_t>(s, zd, zn, kLowHalf);
}
aarch64_decode_rc sve_uunpkhi_s2d_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<uint32_t, uint64_t>(s, zd, zn, kHighHalf);
}
aarch64_decode_rc sve_sunpklo_s2d_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<int32_t, int64_t>(s, zd, zn, kLowHalf);
}
aarch64_decode_rc sve_sunpkhi_s2d_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  return unpack<int32_t, int64_t>(s, zd, zn, kHighHalf);
}

} // namespace ZORVO_LENGTH
