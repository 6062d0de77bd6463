// The logical and floating-point immediates against the host's own decoding
// of the same encodings: each encoding goes into a real A64 instruction in a
// page of generated code, which the host (qemu here) then runs.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <vector>

#include "decode/immediates.h"

namespace {

// A page of generated functions, each `uint64_t f()`, 16 bytes apart.
class code_page {
public:
  explicit code_page(size_t functions) : bytes_(functions * 16) {
    void* p = mmap(nullptr, bytes_, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS,
                   -1, 0);
    code_ = p == MAP_FAILED ? nullptr : static_cast<uint32_t*>(p);
  }
  ~code_page() {
    if (code_) munmap(code_, bytes_);
  }
  bool ok() const { return code_ != nullptr; }

  void put(size_t function, std::initializer_list<uint32_t> words) {
    uint32_t* at = code_ + function * 4;
    for (uint32_t w : words) *at++ = w;
  }
  void publish() {
    __builtin___clear_cache(reinterpret_cast<char*>(code_),
                            reinterpret_cast<char*>(code_) + bytes_);
  }
  uint64_t call(size_t function) const {
    auto fn = reinterpret_cast<uint64_t (*)()>(code_ + function * 4);
    return fn();
  }

private:
  size_t bytes_;
  uint32_t* code_;
};

constexpr uint32_t kRet = 0xd65f03c0;

TEST(LogicalImmediate, EveryValidEncodingMatchesTheHostsOrr) {
  struct encoding {
    uint32_t n, immr, imms;
  };
  std::vector<encoding> valid;
  for (uint32_t n = 0; n < 2; ++n)
    for (uint32_t immr = 0; immr < 64; ++immr)
      for (uint32_t imms = 0; imms < 64; ++imms)
        if (!bitmask_reserved(n, imms)) valid.push_back({n, immr, imms});
  // 64 rotations of 63 + 31 + 15 + 7 + 3 + 1 run lengths.
  ASSERT_EQ(valid.size(), 64u * 120u);

  code_page page(valid.size());
  ASSERT_TRUE(page.ok());
  for (size_t i = 0; i < valid.size(); ++i) {
    const encoding& e = valid[i];
    // orr x0, xzr, #imm
    page.put(i, {0xb2000000u | e.n << 22 | e.immr << 16 | e.imms << 10 | 31u << 5, kRet});
  }
  page.publish();
  int mismatches = 0;
  for (size_t i = 0; i < valid.size(); ++i) {
    const encoding& e = valid[i];
    const uint64_t host = page.call(i);
    const uint64_t ours = decode_bit_mask(e.n, e.immr, e.imms);
    if (host != ours && ++mismatches <= 10)
      ADD_FAILURE() << "N=" << e.n << " immr=" << e.immr << " imms=" << e.imms << std::hex
                    << " host 0x" << host << " ours 0x" << ours;
  }
  EXPECT_EQ(mismatches, 0);
}

TEST(LogicalImmediate, ReservedEncodingsHaveAValueAndDoNotFail) {
  for (uint32_t immr = 0; immr < 64; ++immr) {
    EXPECT_EQ(decode_bit_mask(0, immr, 0x3f), 0u); // no element width at all
    // A run as long as the element: all ones, at any width.
    EXPECT_EQ(decode_bit_mask(1, immr, 0x3f), ~uint64_t{0});
    EXPECT_EQ(decode_bit_mask(0, immr, 0x1f), ~uint64_t{0});
    EXPECT_EQ(decode_bit_mask(0, immr, 0x3e), ~uint64_t{0});
  }
  // The field sits in bits 17..5 of the word.
  EXPECT_EQ(logical_immediate(0x058000a7).value, 0x0000003f0000003fu);
}

TEST(FloatingPointImmediate, All256ValuesMatchTheHostsFmov) {
  code_page page(3 * 256);
  ASSERT_TRUE(page.ok());
  for (uint32_t imm8 = 0; imm8 < 256; ++imm8) {
    page.put(3 * imm8 + 0, {0x1ee01000u | imm8 << 13, 0x1ee60000u, kRet}); // fmov h0; fmov w0, h0
    page.put(3 * imm8 + 1, {0x1e201000u | imm8 << 13, 0x1e260000u, kRet}); // fmov s0; fmov w0, s0
    page.put(3 * imm8 + 2, {0x1e601000u | imm8 << 13, 0x9e660000u, kRet}); // fmov d0; fmov x0, d0
  }
  page.publish();
  for (uint32_t imm8 = 0; imm8 < 256; ++imm8) {
    const aarch64_sve_fp_dup_imm ours = expand_fp_imm8(imm8);
    EXPECT_EQ(ours.half, page.call(3 * imm8 + 0)) << "imm8 " << imm8;
    EXPECT_EQ(ours.single, page.call(3 * imm8 + 1)) << "imm8 " << imm8;
    EXPECT_EQ(ours.dbl, page.call(3 * imm8 + 2)) << "imm8 " << imm8;
  }
}

TEST(ShiftAndLaneFields, ReservedAndBoundaryValuesStayArithmetic) {
  // Simm8 shifted: -128 moved left by 8, and a byte form that keeps the shift.
  EXPECT_EQ(simm8_shifted(0x80u << 5 | 1u << 13), -32768);
  EXPECT_EQ(uimm8_shifted(0xffu << 5 | 1u << 13), 0xff00u);
  EXPECT_EQ(sign_extend(0x1ff, 9), -1);
  EXPECT_EQ(sign_extend(0x0ff, 9), 255);
  // Pattern multiplier 1..16.
  EXPECT_EQ(pattern_multiplier(0), 1u);
  EXPECT_EQ(pattern_multiplier(0xfu << 16), 16u);
}

} // namespace
