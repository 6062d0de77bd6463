// Permutes that reorder the elements of one or two vectors: extract, table
// lookup, reverse, transpose, unzip and zip. Element counts and their halves
// follow the vector length, which need not be a power of two.
#include <cstdint>
#include <cstring>

#include "../state/cpu_state.h"
#include "element.h"
#include "permute_routines.h"

namespace ZORVO_LENGTH {

namespace {

// `which` is 0 or 1: even or odd elements.
template <typename T> void unzip(uint8_t* dst, const uint8_t* a, const uint8_t* b, unsigned which) {
  const unsigned half = elements_of<T>() / 2;
  for (unsigned i = 0; i < half; ++i) {
    store_elem<T>(dst, i, load_elem<T>(a, 2 * i + which));
    store_elem<T>(dst, half + i, load_elem<T>(b, 2 * i + which));
  }
}

// `which` is 0 or 1: the low or the high halves of both sources.
template <typename T>
void interleave(uint8_t* dst, const uint8_t* a, const uint8_t* b, unsigned which) {
  const unsigned half = elements_of<T>() / 2;
  const unsigned from = which * half;
  for (unsigned i = 0; i < half; ++i) {
    store_elem<T>(dst, 2 * i, load_elem<T>(a, from + i));
    store_elem<T>(dst, 2 * i + 1, load_elem<T>(b, from + i));
  }
}

// `which` is 0 or 1: pairs of even or of odd elements.
template <typename T>
void transpose(uint8_t* dst, const uint8_t* a, const uint8_t* b, unsigned which) {
  for (unsigned i = 0; i < elements_of<T>() / 2; ++i) {
    store_elem<T>(dst, 2 * i, load_elem<T>(a, 2 * i + which));
    store_elem<T>(dst, 2 * i + 1, load_elem<T>(b, 2 * i + which));
  }
}

void unzip_any(uint8_t* d, const uint8_t* a, const uint8_t* b, uint32_t size, unsigned which) {
  by_element_size(size, [&](auto t) { unzip<decltype(t)>(d, a, b, which); });
}
void interleave_any(uint8_t* d, const uint8_t* a, const uint8_t* b, uint32_t size, unsigned which) {
  by_element_size(size, [&](auto t) { interleave<decltype(t)>(d, a, b, which); });
}
void transpose_any(uint8_t* d, const uint8_t* a, const uint8_t* b, uint32_t size, unsigned which) {
  by_element_size(size, [&](auto t) { transpose<decltype(t)>(d, a, b, which); });
}

using two_source_permute = void (*)(uint8_t*, const uint8_t*, const uint8_t*, uint32_t, unsigned);
constexpr unsigned kFirst = 0, kSecond = 1; // the 1 or 2 of the instruction's name

// Through a local buffer, so that Zd may be Zn or Zm.
aarch64_decode_rc two_sources(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm,
                              two_source_permute permute, unsigned which) {
  vreg out;
  permute(out.b, s->z[zn.num], s->z[zm.num], zd.elem, which);
  commit(s->z[zd.num], out);
  return AARCH64_DECODE_OK;
}

uint8_t* bytes(char* p) { return reinterpret_cast<uint8_t*>(p); }
const uint8_t* bytes(const char* p) { return reinterpret_cast<const uint8_t*>(p); }

} // namespace

void sve_uzp1(char* dst, const char* a, const char* b, element_size size) {
  unzip_any(bytes(dst), bytes(a), bytes(b), size, kFirst);
}
void sve_zip1(char* dst, const char* a, const char* b, element_size size) {
  interleave_any(bytes(dst), bytes(a), bytes(b), size, kFirst);
}
void sve_zip2(char* dst, const char* a, const char* b, element_size size) {
  interleave_any(bytes(dst), bytes(a), bytes(b), size, kSecond);
}
void sve_rev(char* dst, const char* a, element_size size) {
  by_element_size(size, [&](auto t) {
    using T = decltype(t);
    const unsigned count = elements_of<T>();
    for (unsigned i = 0; i < count; ++i)
      store_elem<T>(bytes(dst), i, load_elem<T>(bytes(a), count - 1 - i));
  });
}

aarch64_decode_rc sve_uzp1_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return two_sources(s, zd, zn, zm, unzip_any, kFirst);
}
aarch64_decode_rc sve_uzp2_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return two_sources(s, zd, zn, zm, unzip_any, kSecond);
}
aarch64_decode_rc sve_zip1_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return two_sources(s, zd, zn, zm, interleave_any, kFirst);
}
aarch64_decode_rc sve_zip2_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return two_sources(s, zd, zn, zm, interleave_any, kSecond);
}
aarch64_decode_rc sve_trn1_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return two_sources(s, zd, zn, zm, transpose_any, kFirst);
}
aarch64_decode_rc sve_trn2_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return two_sources(s, zd, zn, zm, transpose_any, kSecond);
}

// An index at or past the element count selects 0.
aarch64_decode_rc sve_tbl_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  by_element_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    const unsigned count = elements_of<T>();
    const uint8_t* table = s->z[zn.num];
    const uint8_t* indices = s->z[zm.num];
    vreg out;
    for (unsigned i = 0; i < count; ++i) {
      const T index = load_elem<T>(indices, i);
      store_elem<T>(out.b, i, index < count ? load_elem<T>(table, index) : T{0});
    }
    commit(s->z[zd.num], out);
  });
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_rev_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  vreg out;
  sve_rev(reinterpret_cast<char*>(out.b), reinterpret_cast<const char*>(s->z[zn.num]),
          static_cast<element_size>(zd.elem));
  commit(s->z[zd.num], out);
  return AARCH64_DECODE_OK;
}

// A vector's bytes of the pair Zdn:Zm from the byte offset; an offset of the
// vector length or more acts as 0 and leaves Zdn as it was.
aarch64_decode_rc sve_ext_zzi(cpu_state* s, aarch64_z_reg zdn, aarch64_z_reg zm,
                              unsigned int offset) {
  const unsigned bytes = vector_bytes();
  uint8_t pair[2 * kMaxVectorBytes];
  std::memcpy(pair, s->z[zdn.num], bytes);
  std::memcpy(pair + bytes, s->z[zm.num], bytes);
  std::memcpy(s->z[zdn.num], pair + (offset < bytes ? offset : 0), bytes);
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
