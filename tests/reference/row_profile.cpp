#include "row_profile.h"

#include <cctype>
#include <cstring>
#include <string>

namespace {

bool ends_with(const std::string& s, const char* tail) {
  const size_t n = std::strlen(tail);
  return s.size() >= n && s.compare(s.size() - n, n, tail) == 0;
}

// The address letters at the end of a memory name, longest first; a mode
// letter may follow them.
const char* const kAddressCodes[] = {"XVS", "XSV", "YVS", "YSV", "LSS", "SS",
                                     "VI",  "VX",  "VS",  "SV",  "SI"};

const char* address_code(const std::string& name, size_t* at) {
  for (const std::string& s : {name, name.substr(0, name.size() - 1)}) {
    for (const char* code : kAddressCodes) {
      if (ends_with(s, code)) {
        *at = s.size() - std::strlen(code);
        return code;
      }
    }
  }
  return nullptr;
}

} // namespace

row_profile profile_of(const decode_row& row) {
  row_profile p{};
  p.row = &row;
  const decode_map_info& map = decode_maps()[row.map];
  p.mask = row_mask(map);
  p.value = row_value(map, row.key);

  // "Vec", the kind's letters, its width in bits.
  const std::string name = row.name;
  size_t i = 3;
  const char kind = name[i];
  while (i < name.size() && std::isupper(static_cast<unsigned char>(name[i]))) ++i;
  unsigned bits = 0;
  while (i < name.size() && std::isdigit(static_cast<unsigned char>(name[i])))
    bits = bits * 10 + static_cast<unsigned>(name[i++] - '0');
  p.elem_bytes = bits >= 8 ? bits / 8 : 1;
  // Structured forms give their register count after the width:
  // VecU8E3Load1SIZ moves structures of three bytes.
  p.registers = 1;
  if (i + 1 < name.size() && name[i] == 'E' &&
      std::isdigit(static_cast<unsigned char>(name[i + 1])))
    p.registers = static_cast<unsigned>(name[i + 1] - '0');
  p.floating = kind == 'F' || kind == 'D' || kind == 'H';
  // A conversion's kind names its result; its operands are of the kind
  // after "From": VecS32_4FromFVM reads singles, VecF32FromS4VM integers.
  const size_t from = name.find("From");
  if (from != std::string::npos && from + 4 < name.size()) {
    const char source = name[from + 4];
    p.floating = source == 'F' || source == 'D' || source == 'H';
  }
  // Conversions from half or single read only the low bits of a wider
  // element: VecS64_8FromHVM, VecD64ExtndHVM, VecU64_8FromFVM.
  p.source_bytes = p.elem_bytes;
  for (const char* widening : {"FromH", "ExtndH", "FromF", "ExtndF"}) {
    if (name.find(widening) == std::string::npos) continue;
    const unsigned bytes = widening[std::strlen(widening) - 1] == 'H' ? 2 : 4;
    if (bytes < p.source_bytes) p.source_bytes = bytes;
  }

  // Every memory form sits where bit 31 is set.
  if (!(p.value >> 31)) return p;
  size_t at = 0;
  const char* code = address_code(name, &at);
  if (!code) return p;
  const std::string c = code;
  if (c == "SI")
    p.addr = addressing::scalar_imm;
  else if (c == "LSS" || c == "SS")
    p.addr = addressing::scalar_index;
  else if (c == "VI")
    p.addr = addressing::vector_imm;
  else if (c == "VX")
    p.addr = addressing::vector_scalar;
  else
    p.addr = addressing::scalar_vector;

  // The memory element's bytes stand just before the address letters, with
  // a Q (O) between them for the quadword (octaword) replicating loads.
  size_t d = at;
  if (d > 0 && (name[d - 1] == 'Q' || name[d - 1] == 'O')) --d;
  p.msize = 1;
  if (d > 0 && std::isdigit(static_cast<unsigned char>(name[d - 1])))
    p.msize = static_cast<unsigned>(name[d - 1] - '0');

  p.lane_bytes = p.elem_bytes >= 8 ? 8 : 4;
  p.offset_32 = p.lane_bytes == 4 || c[0] == 'X' || c[0] == 'Y';
  // 64-bit offsets wrap like signed ones; 32-bit ones are zero-extended
  // unless the name says X.
  p.offset_signed = c[0] == 'X' || !p.offset_32;
  p.offset_scaled = c.find("SV") != std::string::npos;
  p.first_fault =
      name.find("LoadFF") != std::string::npos || name.find("LoadNF") != std::string::npos;
  p.contiguous = !p.first_fault && (name.find("CLoad") != std::string::npos ||
                                    name.find("CStore") != std::string::npos);
  return p;
}
