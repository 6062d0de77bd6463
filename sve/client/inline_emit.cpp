#include "inline_emit.h"

#include <cstring>

void inline_code::point(unsigned index, unsigned target) {
  if (index >= count) return;
  const uint32_t distance = target - index;
  const bool unconditional = (words[index] & 0xfc000000) == a64::kBranch;
  const bool test_bit = (words[index] & 0x7e000000) == 0x36000000;
  if (unconditional)
    words[index] |= distance & 0x3ffffff;
  else if (test_bit)
    words[index] |= (distance & 0x3fff) << 5;
  else
    words[index] |= (distance & 0x7ffff) << 5;
}

namespace a64 {
namespace {

// The load/store (unsigned immediate) class: `opcode` holds size, V and opc.
// Every field of the record lies within the immediate's reach for Q and X
// registers; an offset past it is refused, not wrapped.
static_assert(sizeof(cpu_state) <= 4095 * 8);
void scaled_access(inline_code& c, uint32_t opcode, unsigned scale, unsigned rt, unsigned base,
                   size_t offset) {
  if (offset % scale != 0 || offset / scale > 4095) {
    c.overflow = true;
    return;
  }
  c.put(opcode | uint32_t(offset / scale) << 10 | base << 5 | rt);
}

uint32_t three_same(uint32_t opcode, unsigned vd, unsigned vn, unsigned vm) {
  return opcode | vm << 16 | vn << 5 | vd;
}

} // namespace

void load_q(inline_code& c, unsigned qt, unsigned base, size_t offset) {
  scaled_access(c, 0x3dc00000, 16, qt, base, offset);
}
void store_q(inline_code& c, unsigned qt, unsigned base, size_t offset) {
  scaled_access(c, 0x3d800000, 16, qt, base, offset);
}
void load_x(inline_code& c, unsigned xt, unsigned base, size_t offset) {
  scaled_access(c, 0xf9400000, 8, xt, base, offset);
}
void store_x(inline_code& c, unsigned xt, unsigned base, size_t offset) {
  scaled_access(c, 0xf9000000, 8, xt, base, offset);
}

uint32_t load_consecutive_q(unsigned vt, unsigned count, unsigned xn) {
  static constexpr uint32_t kOpcode[] = {0x4c407000, 0x4c40a000, 0x4c406000, 0x4c402000};
  return kOpcode[count - 1] | xn << 5 | vt;
}

void move_constant(inline_code& c, unsigned xd, uint64_t value) {
  // movn for values whose high halfwords are all ones (small negatives).
  if (~value >> 16 == 0) {
    c.put(0x92800000 | uint32_t(~value & 0xffff) << 5 | xd);
    return;
  }
  bool first = true;
  for (unsigned hw = 0; hw < 4; ++hw) {
    const uint32_t part = uint32_t(value >> (16 * hw)) & 0xffff;
    if (part == 0 && !(first && hw == 3)) continue;
    c.put((first ? 0xd2800000 : 0xf2800000) | hw << 21 | part << 5 | xd);
    first = false;
  }
}

void add_constant(inline_code& c, unsigned xd, unsigned xn, int64_t value) {
  const bool subtract = value < 0;
  const uint64_t magnitude = subtract ? 0 - uint64_t(value) : uint64_t(value);
  const uint32_t op = subtract ? 0xd1000000 : 0x91000000;
  if (magnitude < 4096) {
    c.put(op | uint32_t(magnitude) << 10 | xn << 5 | xd);
  } else if (magnitude % 4096 == 0 && magnitude >> 12 < 4096) {
    c.put(op | 1u << 22 | uint32_t(magnitude >> 12) << 10 | xn << 5 | xd);
  } else {
    move_constant(c, 15, uint64_t(value));
    c.put(add_shifted(xd, xn, 15, 0));
  }
}

uint32_t add_shifted(unsigned xd, unsigned xn, unsigned xm, unsigned shift) {
  return 0x8b000000 | xm << 16 | shift << 10 | xn << 5 | xd;
}
uint32_t and_x(unsigned xd, unsigned xn, unsigned xm) {
  return 0x8a000000 | xm << 16 | xn << 5 | xd;
}

uint32_t orr_x(unsigned xd, unsigned xn, unsigned xm) {
  return 0xaa000000 | xm << 16 | xn << 5 | xd;
}
uint32_t lsr_x(unsigned xd, unsigned xn, unsigned shift) {
  return 0xd340fc00 | shift << 16 | xn << 5 | xd;
}
uint32_t load_pair_x(unsigned xt1, unsigned xt2, unsigned xn, unsigned offset) {
  return 0xa9400000 | (offset / 8) << 15 | xt2 << 10 | xn << 5 | xt1;
}
uint32_t store_element(simd_size size, unsigned xt, unsigned xn, unsigned offset) {
  return 0x39000000 | uint32_t(size) << 30 | (offset >> size) << 10 | xn << 5 | xt;
}
uint32_t branch_if_bit_clear(unsigned xt, unsigned bit) {
  return 0x36000000 | (bit >> 5) << 31 | (bit & 31) << 19 | xt;
}

namespace {
// N:immr:imms of a logical immediate with one set bit per element.
uint32_t element_ones_fields(simd_size size) {
  static constexpr uint32_t kImms[] = {0x30, 0x20, 0x00, 0x00};
  return (size == D ? 1u << 12 : 0u) | kImms[size];
}
} // namespace

uint32_t and_element_ones(simd_size size, unsigned xd, unsigned xn) {
  return 0x92000000 | element_ones_fields(size) << 10 | xn << 5 | xd;
}
uint32_t eor_element_ones(simd_size size, unsigned xd, unsigned xn) {
  return 0xd2000000 | element_ones_fields(size) << 10 | xn << 5 | xd;
}
uint32_t umov_d(unsigned xd, unsigned vn, unsigned lane) {
  return 0x4e083c00 | lane << 20 | vn << 5 | xd;
}

uint32_t add_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4e208400 | size << 22, vd, vn, vm);
}
uint32_t sub_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e208400 | size << 22, vd, vn, vm);
}
uint32_t and_v(unsigned vd, unsigned vn, unsigned vm) { return three_same(0x4e201c00, vd, vn, vm); }
uint32_t orr_v(unsigned vd, unsigned vn, unsigned vm) { return three_same(0x4ea01c00, vd, vn, vm); }
uint32_t eor_v(unsigned vd, unsigned vn, unsigned vm) { return three_same(0x6e201c00, vd, vn, vm); }
uint32_t test_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4e208c00 | size << 22, vd, vn, vm);
}
uint32_t insert_if_true_v(unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6ea01c00, vd, vn, vm);
}

uint32_t fadd_v(bool is_double, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4e20d400 | uint32_t(is_double) << 22, vd, vn, vm);
}
uint32_t fsub_v(bool is_double, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4ea0d400 | uint32_t(is_double) << 22, vd, vn, vm);
}
uint32_t fmul_v(bool is_double, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e20dc00 | uint32_t(is_double) << 22, vd, vn, vm);
}
uint32_t fmla_v(bool is_double, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4e20cc00 | uint32_t(is_double) << 22, vd, vn, vm);
}
uint32_t fmls_v(bool is_double, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4ea0cc00 | uint32_t(is_double) << 22, vd, vn, vm);
}
uint32_t fneg_v(bool is_double, unsigned vd, unsigned vn) {
  return 0x6ea0f800 | uint32_t(is_double) << 22 | vn << 5 | vd;
}

uint32_t dup_v_from_x(simd_size size, unsigned vd, unsigned xn) {
  return 0x4e000c00 | (1u << size) << 16 | xn << 5 | vd;
}

void call_decoder(inline_code& c, sve_decoder decoder, uint32_t word, uint64_t pc) {
  c.put(kBlr | kInlineThinCall << 5);
  uint32_t constants[kWordCallWords] = {};
  const uint64_t decoder_address = reinterpret_cast<uint64_t>(decoder);
  std::memcpy(&constants[0], &decoder_address, 8);
  std::memcpy(&constants[kWordCallPcWord - 1], &pc, 8);
  constants[4] = word;
  for (uint32_t w : constants) c.put(w);
}

uint32_t orn_v(unsigned vd, unsigned vn, unsigned vm) { return three_same(0x4ee01c00, vd, vn, vm); }
uint32_t bic_v(unsigned vd, unsigned vn, unsigned vm) { return three_same(0x4e601c00, vd, vn, vm); }
uint32_t umin_b(unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e206c00, vd, vn, vm);
}
uint32_t umax_b(unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e206400, vd, vn, vm);
}
uint32_t uminv_v(simd_size size, unsigned vd, unsigned vn) {
  return 0x6e31a800 | size << 22 | vn << 5 | vd;
}
uint32_t umaxv_v(simd_size size, unsigned vd, unsigned vn) {
  return 0x6e30a800 | size << 22 | vn << 5 | vd;
}
uint32_t uaddlv_b(unsigned vd, unsigned vn) { return 0x6e303800 | vn << 5 | vd; }
uint32_t neg_v(simd_size size, unsigned vd, unsigned vn) {
  return 0x6e20b800 | size << 22 | vn << 5 | vd;
}
uint32_t not_v(unsigned vd, unsigned vn) { return 0x6e205800 | vn << 5 | vd; }
uint32_t cmhi_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e203400 | size << 22, vd, vn, vm);
}
uint32_t cmhs_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e203c00 | size << 22, vd, vn, vm);
}
uint32_t cmgt_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4e203400 | size << 22, vd, vn, vm);
}
uint32_t cmge_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x4e203c00 | size << 22, vd, vn, vm);
}
uint32_t cmeq_v(simd_size size, unsigned vd, unsigned vn, unsigned vm) {
  return three_same(0x6e208c00 | size << 22, vd, vn, vm);
}
uint32_t lane_sign_to_one(simd_size size, unsigned vd, unsigned vn) {
  return 0x6f000400 | ((8u << size) + 1) << 16 | vn << 5 | vd; // ushr #bits-1
}
void lane_ones(inline_code& c, simd_size size, unsigned v) {
  static constexpr uint32_t kMoviOne[] = {0x4f00e420, 0x4f008420, 0x4f000420};
  if (size != D) {
    c.put(kMoviOne[size] | v);
    return;
  }
  move_constant(c, 9, 1);
  c.put(dup_v_from_x(D, v, 9));
}
uint32_t movi_b(unsigned vd, uint8_t imm) {
  return 0x4f00e400 | uint32_t(imm >> 5) << 16 | uint32_t(imm & 31) << 5 | vd;
}
uint32_t dup_b0(unsigned vd, unsigned vn) { return 0x4e010400 | vn << 5 | vd; }
uint32_t umov_b0(unsigned wd, unsigned vn) { return 0x0e013c00 | vn << 5 | wd; }
uint32_t umov_h0(unsigned wd, unsigned vn) { return 0x0e023c00 | vn << 5 | wd; }
uint32_t load_byte_indexed(unsigned wt, unsigned xn, unsigned xm) {
  return 0x38606800 | xm << 16 | xn << 5 | wt;
}

} // namespace a64
