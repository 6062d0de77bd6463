// The instruction representation: lists, the small decoder, the encoder's
// refusals, and generated code run for real.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <cstring>
#include <random>

#include "dr_api.h"
#include "droption.h"
#include "ir.h"

namespace {

void* const dc = GLOBAL_DCONTEXT;

opnd_t x(int n) { return opnd_create_reg(reg_id_t(DR_REG_X0 + n)); }
opnd_t mem(reg_id_t base, int disp, opnd_size_t size) {
  return opnd_create_base_disp(base, DR_REG_NULL, 0, disp, size);
}

instr_t* raw_word(uint32_t* word) {
  instr_t* i = instr_create(dc);
  instr_set_raw_bits(i, reinterpret_cast<byte*>(word), 4);
  return i;
}

bool encodes(instr_t* instr) {
  byte buf[16];
  const bool ok = instr_encode(dc, instr, buf) != nullptr;
  instr_destroy(dc, instr);
  return ok;
}

// Encodes a list into an executable page and returns its start.
struct code_page {
  byte* page = static_cast<byte*>(
      mmap(nullptr, 65536, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
  ~code_page() { munmap(page, 65536); }
  byte* load(instrlist_t* ilist) {
    byte* pc = page;
    for (instr_t* i = instrlist_first(ilist); i; i = instr_get_next(i)) {
      pc = instr_encode(dc, i, pc);
      if (pc == nullptr) return nullptr;
    }
    __builtin___clear_cache(reinterpret_cast<char*>(page), reinterpret_cast<char*>(pc));
    instrlist_clear_and_destroy(dc, ilist);
    return page;
  }
};

TEST(InstrList, InsertRemoveAndWalkApplicationInstructions) {
  instrlist_t* ilist = instrlist_create(dc);
  instr_t* a = INSTR_CREATE_nop(dc);
  instr_t* b = INSTR_CREATE_nop(dc);
  instr_t* meta = INSTR_CREATE_nop(dc);
  instr_t* c = INSTR_CREATE_nop(dc);
  instrlist_append(ilist, b);
  instrlist_prepend(ilist, a);
  instrlist_meta_preinsert(ilist, b, meta);
  instrlist_postinsert(ilist, b, c);
  EXPECT_EQ(instrlist_first(ilist), a);
  EXPECT_EQ(instr_get_next(a), meta);
  EXPECT_EQ(instr_get_next_app(a), b);
  EXPECT_EQ(instrlist_last(ilist), c);

  instrlist_remove(ilist, a);
  EXPECT_EQ(instrlist_first(ilist), meta);
  EXPECT_EQ(instrlist_first_app(ilist), b);
  instrlist_remove(ilist, c);
  EXPECT_EQ(instrlist_last(ilist), b);
  EXPECT_EQ(instr_get_prev(b), meta);
  instr_destroy(dc, a);
  instr_destroy(dc, c);
  instrlist_clear_and_destroy(dc, ilist);
}

TEST(Decoder, TellsSystemRegisterMovesAndNothingElse) {
  struct {
    uint32_t word;
    int opcode;
    reg_id_t sysreg, gpr;
  } cases[] = {
      {0xd51b4405, OP_msr, DR_REG_FPCR, DR_REG_X5},    // msr fpcr, x5
      {0xd51b441f, OP_msr, DR_REG_FPCR, DR_REG_XZR},   // msr fpcr, xzr
      {0xd51b4435, OP_msr, DR_REG_FPSR, DR_REG_X21},   // msr fpsr, x21
      {0xd51b4200, OP_msr, DR_REG_NZCV, DR_REG_X0},    // msr nzcv, x0
      {0xd53b4416, OP_mrs, DR_REG_FPCR, DR_REG_X22},   // mrs x22, fpcr
      {0xd51bd040, OP_msr, DR_REG_INVALID, DR_REG_X0}, // msr tpidr_el0, x0
  };
  for (auto& c : cases) {
    instr_t* i = raw_word(&c.word);
    ASSERT_EQ(instr_get_opcode(i), c.opcode) << std::hex << c.word;
    ASSERT_EQ(instr_num_dsts(i), 1);
    ASSERT_EQ(instr_num_srcs(i), 1);
    const opnd_t sys = c.opcode == OP_msr ? instr_get_dst(i, 0) : instr_get_src(i, 0);
    const opnd_t gpr = c.opcode == OP_msr ? instr_get_src(i, 0) : instr_get_dst(i, 0);
    EXPECT_EQ(opnd_get_reg(sys), c.sysreg) << std::hex << c.word;
    EXPECT_EQ(opnd_get_reg(gpr), c.gpr) << std::hex << c.word;
    // Still the application's bytes: the encoder copies them.
    byte out[4];
    ASSERT_NE(instr_encode(dc, i, out), nullptr);
    EXPECT_EQ(std::memcmp(out, &c.word, 4), 0);
    instr_destroy(dc, i);
  }
  uint32_t sve_add = 0x04a20020, branch = 0x14000010;
  for (uint32_t* w : {&sve_add, &branch}) {
    instr_t* i = raw_word(w);
    EXPECT_EQ(instr_get_opcode(i), OP_UNDECODED);
    EXPECT_EQ(instr_num_dsts(i), 0);
    instr_destroy(dc, i);
  }
}

TEST(Encoder, RefusesWhatHasNoEncoding) {
  // Offsets out of every form's range, or misaligned for a pair.
  EXPECT_FALSE(encodes(INSTR_CREATE_str(dc, mem(DR_REG_X1, 32768, OPSZ_8), x(0))));
  EXPECT_FALSE(encodes(INSTR_CREATE_ldr(dc, x(0), mem(DR_REG_X1, -257, OPSZ_8))));
  EXPECT_FALSE(encodes(INSTR_CREATE_stp(dc, mem(DR_REG_X1, 512, OPSZ_16), x(0), x(1))));
  EXPECT_FALSE(encodes(INSTR_CREATE_stp(dc, mem(DR_REG_X1, 4, OPSZ_16), x(0), x(1))));
  EXPECT_FALSE(encodes(INSTR_CREATE_add(dc, x(0), x(1), OPND_CREATE_INT(4096))));
  // Registers where the form has none: SP as data, the zero register as a
  // base, SP in a shifted-register add, W with an X memory size.
  EXPECT_FALSE(
      encodes(INSTR_CREATE_str(dc, mem(DR_REG_X1, 0, OPSZ_8), opnd_create_reg(DR_REG_XSP))));
  EXPECT_FALSE(encodes(INSTR_CREATE_ldr(dc, x(0), mem(DR_REG_XZR, 0, OPSZ_8))));
  EXPECT_FALSE(encodes(INSTR_CREATE_add(dc, x(0), opnd_create_reg(DR_REG_XSP), x(2))));
  EXPECT_FALSE(
      encodes(INSTR_CREATE_str(dc, mem(DR_REG_X1, 0, OPSZ_8), opnd_create_reg(DR_REG_W0))));
  EXPECT_FALSE(encodes(INSTR_CREATE_ldp(dc, x(3), x(3), mem(DR_REG_X1, 0, OPSZ_16))));
  EXPECT_FALSE(encodes(INSTR_CREATE_msr(dc, opnd_create_reg(DR_REG_INVALID), x(0))));
  EXPECT_FALSE(encodes(INSTR_CREATE_movz(dc, x(0), OPND_CREATE_INT(0x10000), OPND_CREATE_INT(0))));
  // A branch reaches 128 MiB back and 128 MiB less a word forward.
  byte* far = reinterpret_cast<byte*>(uintptr_t{1} << 40);
  byte buf[4];
  instr_t* b = INSTR_CREATE_b(dc, opnd_create_pc(far));
  EXPECT_EQ(instr_encode_to_copy(dc, b, buf, far - (ptrdiff_t(1) << 27)), nullptr);
  EXPECT_NE(instr_encode_to_copy(dc, b, buf, far - (ptrdiff_t(1) << 27) + 4), nullptr);
  EXPECT_NE(instr_encode_to_copy(dc, b, buf, far + (ptrdiff_t(1) << 27)), nullptr);
  EXPECT_EQ(instr_encode_to_copy(dc, b, buf, far + (ptrdiff_t(1) << 27) + 4), nullptr);
  instr_destroy(dc, b);
  // cbz: a megabyte, and never on SP.
  instr_t* cbz = INSTR_CREATE_cbz(dc, opnd_create_pc(far), x(3));
  EXPECT_EQ(instr_encode_to_copy(dc, cbz, buf, far - (ptrdiff_t(1) << 20)), nullptr);
  EXPECT_NE(instr_encode_to_copy(dc, cbz, buf, far - (ptrdiff_t(1) << 20) + 4), nullptr);
  EXPECT_NE(instr_encode_to_copy(dc, cbz, buf, far + (ptrdiff_t(1) << 20)), nullptr);
  EXPECT_EQ(instr_encode_to_copy(dc, cbz, buf, far + 2), nullptr);
  instr_destroy(dc, cbz);
  EXPECT_FALSE(encodes(INSTR_CREATE_cbz(dc, opnd_create_pc(buf), opnd_create_reg(DR_REG_XSP))));
}

TEST(GeneratedCode, MovImmediateLoadsEveryPattern) {
  std::mt19937_64 rng(7);
  std::vector<uint64_t> values = {
      0, 1, 0xffff, 0x10000, 0xffffffffffffffffull, 0x8000000000000000ull, 0x0000ffff00000000ull};
  for (int i = 0; i < 200; ++i) values.push_back(rng() >> (rng() % 64));
  code_page code;
  for (uint64_t v : values) {
    instrlist_t* ilist = instrlist_create(dc);
    instr_t* ret = INSTR_CREATE_ret(dc, x(30));
    instrlist_append(ilist, ret);
    instr_t *first = nullptr, *last = nullptr;
    instrlist_insert_mov_immed_ptrsz(dc, static_cast<ptr_int_t>(v), x(0), ilist, ret, &first,
                                     &last);
    EXPECT_EQ(first, instrlist_first(ilist));
    EXPECT_EQ(instr_get_next(last), ret);
    auto fn = reinterpret_cast<uint64_t (*)()>(code.load(ilist));
    ASSERT_NE(fn, nullptr);
    EXPECT_EQ(fn(), v);
  }
}

TEST(ClientOptions, OnlyTheSeparatorPasses) {
  std::string err;
  int last = 0;
  const char* none[] = {"client"};
  EXPECT_TRUE(droption_parser_t::parse_argv(DROPTION_SCOPE_CLIENT, 1, none, &err, &last));
  const char* separated[] = {"client", "--", "-x", "anything"};
  EXPECT_TRUE(droption_parser_t::parse_argv(DROPTION_SCOPE_CLIENT, 4, separated, &err, &last));
  EXPECT_EQ(last, 2);
  const char* unknown[] = {"client", "-x", "--"};
  EXPECT_FALSE(droption_parser_t::parse_argv(DROPTION_SCOPE_CLIENT, 3, unknown, &err, &last));
  EXPECT_EQ(err, "Unknown option: -x");
  EXPECT_EQ(last, 1);
  EXPECT_TRUE(droption_parser_t::allops().empty());
}

} // namespace
