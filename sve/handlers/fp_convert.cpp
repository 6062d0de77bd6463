// Conversions between single, double and integers, predicated. Where either
// side is 64 bits wide the element is 64 bits, and a 32-bit value stands in
// its low half: a 32-bit source is read from there, and a 32-bit result is
// written there with the upper half zero, or sign-extended for fcvtzs.
#include "../state/cpu_state.h"
#include "fp_element.h"

namespace ZORVO_LENGTH {

namespace {

// Each active element of Zd becomes convert(element of Zn), both read and
// written as unsigned words of the element's width W.
template <typename W, typename Convert>
aarch64_decode_rc convert(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                          Convert convert_one) {
  const uint8_t* n = s->z[zn.num];
  merge_elements<W>(s, zd, pg, [&](unsigned i) { return convert_one(load_elem<W>(n, i)); });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_fcvt_s2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                   aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) {
    return to_bits(host_fcvt_widen(from_bits<float>(static_cast<uint32_t>(e))));
  });
}
aarch64_decode_rc sve_fcvt_d2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                   aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) {
    return uint64_t{to_bits(host_fcvt_narrow(from_bits<double>(e)))};
  });
}

aarch64_decode_rc sve_fcvtzs_s2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn) {
  return convert<uint32_t>(s, zd, pg, zn, [](uint32_t e) {
    return static_cast<uint32_t>(host_fcvtzs_w(from_bits<float>(e)));
  });
}
aarch64_decode_rc sve_fcvtzs_s2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) {
    return static_cast<uint64_t>(host_fcvtzs_x(from_bits<float>(static_cast<uint32_t>(e))));
  });
}
aarch64_decode_rc sve_fcvtzs_d2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) {
    const int64_t widened = host_fcvtzs_w(from_bits<double>(e)); // saturated to 32 bits
    return static_cast<uint64_t>(widened);
  });
}
aarch64_decode_rc sve_fcvtzs_d2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) {
    return static_cast<uint64_t>(host_fcvtzs_x(from_bits<double>(e)));
  });
}
aarch64_decode_rc sve_fcvtzu_d2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn) {
  return convert<uint64_t>(
      s, zd, pg, zn, [](uint64_t e) { return uint64_t{host_fcvtzu_w(from_bits<double>(e))}; });
}
aarch64_decode_rc sve_fcvtzu_d2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                     aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn,
                           [](uint64_t e) { return host_fcvtzu_x(from_bits<double>(e)); });
}

aarch64_decode_rc sve_scvtf_s2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint32_t>(
      s, zd, pg, zn, [](uint32_t e) { return to_bits(host_scvtf_s(static_cast<int32_t>(e))); });
}
aarch64_decode_rc sve_scvtf_s2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint64_t>(
      s, zd, pg, zn, [](uint64_t e) { return to_bits(host_scvtf_d(static_cast<int32_t>(e))); });
}
aarch64_decode_rc sve_scvtf_d2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) {
    return uint64_t{to_bits(host_scvtf_s(static_cast<int64_t>(e)))};
  });
}
aarch64_decode_rc sve_scvtf_d2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint64_t>(
      s, zd, pg, zn, [](uint64_t e) { return to_bits(host_scvtf_d(static_cast<int64_t>(e))); });
}
aarch64_decode_rc sve_ucvtf_s2s_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint32_t>(s, zd, pg, zn, [](uint32_t e) { return to_bits(host_ucvtf_s(e)); });
}
aarch64_decode_rc sve_ucvtf_s2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint64_t>(
      s, zd, pg, zn, [](uint64_t e) { return to_bits(host_ucvtf_d(static_cast<uint32_t>(e))); });
}
aarch64_decode_rc sve_ucvtf_d2d_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                    aarch64_z_reg zn) {
  return convert<uint64_t>(s, zd, pg, zn, [](uint64_t e) { return to_bits(host_ucvtf_d(e)); });
}

} // namespace ZORVO_LENGTH
