// Prints every instruction form the runtime encodes, over many registers and
// offsets, one per line: the encoder's word in hex, a tab, and the same
// instruction as assembly text written independently of the encoder. The
// check_encoder script assembles the text with GNU as and compares.
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "dr_api.h"

namespace {

void* const dc = GLOBAL_DCONTEXT;
int failures;

std::string xname(int n, bool sp) {
  if (n == 31) return sp ? "sp" : "xzr";
  return "x" + std::to_string(n);
}
std::string wname(int n, bool sp) {
  if (n == 31) return sp ? "wsp" : "wzr";
  return "w" + std::to_string(n);
}
reg_id_t xreg(int n, bool sp) {
  return n == 31 ? reg_id_t(sp ? DR_REG_XSP : DR_REG_XZR) : reg_id_t(DR_REG_X0 + n);
}
reg_id_t wreg(int n, bool sp) {
  return n == 31 ? reg_id_t(sp ? DR_REG_WSP : DR_REG_WZR) : reg_id_t(DR_REG_W0 + n);
}

// Encodes instr at a fixed address (branches are relative to it) and prints.
void emit(instr_t* instr, const std::string& text) {
  static byte buf[16];
  byte* const at = reinterpret_cast<byte*>(uintptr_t{0x400000});
  byte* end = instr_encode_to_copy(dc, instr, buf, at);
  if (end != buf + 4) {
    std::fprintf(stderr, "encoder refused: %s\n", text.c_str());
    ++failures;
  } else {
    uint32_t word;
    __builtin_memcpy(&word, buf, 4);
    std::printf("%08" PRIx32 "\t%s\n", word, text.c_str());
  }
  instr_destroy(dc, instr);
}

// Register numbers that cover every register once per sweep, paired with
// partners that also cover everything.
int partner(int n, int k) { return (n * 7 + k) % 32; }

void add_sub_immediate() {
  const int imms[] = {0, 1, 8, 0x5a5, 4095};
  for (int op = 0; op < 2; ++op)
    for (int d = 0; d < 32; ++d)
      for (int s = 0; s < 2; ++s) {
        const int n = partner(d, 3 + s), imm = imms[(d + s) % 5], shift = s * 12;
        const char* mn = op ? "sub" : "add";
        const std::string sh = shift ? ", lsl #12" : "";
        emit(instr_create_1dst_4src(dc, op ? OP_sub : OP_add, opnd_create_reg(xreg(d, true)),
                                    opnd_create_reg(xreg(n, true)), OPND_CREATE_INT(imm),
                                    OPND_CREATE_LSL(), OPND_CREATE_INT(shift)),
             std::string(mn) + " " + xname(d, true) + ", " + xname(n, true) + ", #" +
                 std::to_string(imm) + sh);
        emit(instr_create_1dst_4src(dc, op ? OP_sub : OP_add, opnd_create_reg(wreg(d, true)),
                                    opnd_create_reg(wreg(n, true)), OPND_CREATE_INT(imm),
                                    OPND_CREATE_LSL(), OPND_CREATE_INT(shift)),
             std::string(mn) + " " + wname(d, true) + ", " + wname(n, true) + ", #" +
                 std::to_string(imm) + sh);
      }
  // The client's two moves of SP.
  emit(INSTR_CREATE_add(dc, opnd_create_reg(DR_REG_X26), opnd_create_reg(DR_REG_XSP),
                        OPND_CREATE_INT(0)),
       "add x26, sp, #0");
  emit(INSTR_CREATE_add(dc, opnd_create_reg(DR_REG_XSP), opnd_create_reg(DR_REG_X26),
                        OPND_CREATE_INT(0)),
       "add sp, x26, #0");
}

void add_sub_register() {
  const char* shifts[] = {"lsl", "lsr", "asr"};
  for (int op = 0; op < 2; ++op)
    for (int d = 0; d < 32; ++d) {
      const int n = partner(d, 5), m = partner(d, 11), type = d % 3, amount = (d * 5) % 32;
      const std::string mn = op ? "sub " : "add ", shift = std::string(", ") + shifts[type] + " #";
      auto create = [&](reg_id_t rd, reg_id_t rn, reg_id_t rm, int amt) {
        return op ? INSTR_CREATE_sub_shift(dc, opnd_create_reg(rd), opnd_create_reg(rn),
                                           opnd_create_reg(rm), OPND_CREATE_INT(type),
                                           OPND_CREATE_INT(amt))
                  : INSTR_CREATE_add_shift(dc, opnd_create_reg(rd), opnd_create_reg(rn),
                                           opnd_create_reg(rm), OPND_CREATE_INT(type),
                                           OPND_CREATE_INT(amt));
      };
      emit(create(xreg(d, false), xreg(n, false), xreg(m, false), amount + 32),
           mn + xname(d, false) + ", " + xname(n, false) + ", " + xname(m, false) + shift +
               std::to_string(amount + 32));
      emit(create(wreg(d, false), wreg(n, false), wreg(m, false), amount),
           mn + wname(d, false) + ", " + wname(n, false) + ", " + wname(m, false) + shift +
               std::to_string(amount));
    }
}

struct data_kind {
  const char* prefix;
  int bytes;
  reg_id_t first;
};
const data_kind kX{"x", 8, DR_REG_X0}, kW{"w", 4, DR_REG_W0}, kQ{"q", 16, DR_REG_Q0};

reg_id_t data_reg(const data_kind& k, int n) {
  if (n == 31 && k.first != DR_REG_Q0) return k.first == DR_REG_X0 ? DR_REG_XZR : DR_REG_WZR;
  return reg_id_t(k.first + n);
}
std::string data_name(const data_kind& k, int n) {
  if (n == 31 && k.first != DR_REG_Q0) return k.first == DR_REG_X0 ? "xzr" : "wzr";
  return k.prefix + std::to_string(n);
}
opnd_size_t size_of(int bytes) {
  return bytes == 4 ? OPSZ_4 : bytes == 8 ? OPSZ_8 : bytes == 16 ? OPSZ_16 : OPSZ_32;
}

void load_store(const data_kind& k) {
  // Scaled offsets over the whole range, then unscaled ones where only the
  // 9-bit form fits.
  const int scaled[] = {0, 1, 2, 3, 17, 18, 33, 100, 1000, 4095};
  const int unscaled[] = {-256, -255, -17, -8, -1, 1, 3, 7, 100, 255};
  for (int t = 0; t < 32; ++t)
    for (int v = 0; v < 2; ++v) {
      const int n = partner(t, 1 + v);
      const int disp_scaled = scaled[(t + v) % 10] * k.bytes;
      int disp_unscaled = unscaled[(t * 3 + v) % 10];
      if (disp_unscaled >= 0 && disp_unscaled % k.bytes == 0) disp_unscaled = -disp_unscaled - 1;
      for (int load = 0; load < 2; ++load) {
        const opnd_t reg = opnd_create_reg(data_reg(k, t));
        const std::string mn = load ? "ldr" : "str", umn = load ? "ldur" : "stur";
        const std::string rt = data_name(k, t) + ", [" + xname(n, true);
        const opnd_t m1 =
            opnd_create_base_disp(xreg(n, true), DR_REG_NULL, 0, disp_scaled, size_of(k.bytes));
        const opnd_t m2 =
            opnd_create_base_disp(xreg(n, true), DR_REG_NULL, 0, disp_unscaled, size_of(k.bytes));
        emit(load ? INSTR_CREATE_ldr(dc, reg, m1) : INSTR_CREATE_str(dc, m1, reg),
             mn + " " + rt + ", #" + std::to_string(disp_scaled) + "]");
        emit(load ? INSTR_CREATE_ldr(dc, reg, m2) : INSTR_CREATE_str(dc, m2, reg),
             umn + " " + rt + ", #" + std::to_string(disp_unscaled) + "]");
        // The unscaled form asked for by name, at an aligned offset too.
        const opnd_t m3 = opnd_create_base_disp(xreg(n, true), DR_REG_NULL, 0, k.bytes * (v + 1),
                                                size_of(k.bytes));
        emit(load ? INSTR_CREATE_ldur(dc, reg, m3) : INSTR_CREATE_stur(dc, m3, reg),
             umn + " " + rt + ", #" + std::to_string(k.bytes * (v + 1)) + "]");
      }
    }
}

void pairs(const data_kind& k) {
  for (int t = 0; t < 32; ++t)
    for (int v = 0; v < 2; ++v) {
      const int t2 = partner(t, 9 + v), n = partner(t, 4 + v);
      const int disp = ((t * 13 + v * 50) % 128 - 64) * k.bytes;
      const opnd_t mem =
          opnd_create_base_disp(xreg(n, true), DR_REG_NULL, 0, disp, size_of(2 * k.bytes));
      const std::string regs = data_name(k, t) + ", " + data_name(k, t2) + ", [" + xname(n, true) +
                               ", #" + std::to_string(disp) + "]";
      emit(INSTR_CREATE_stp(dc, mem, opnd_create_reg(data_reg(k, t)),
                            opnd_create_reg(data_reg(k, t2))),
           "stp " + regs);
      if (t != t2)
        emit(INSTR_CREATE_ldp(dc, opnd_create_reg(data_reg(k, t)), opnd_create_reg(data_reg(k, t2)),
                              mem),
             "ldp " + regs);
    }
}

void system_moves() {
  const struct {
    reg_id_t reg;
    const char* name;
  } sysregs[] = {{DR_REG_NZCV, "nzcv"},
                 {DR_REG_FPCR, "fpcr"},
                 {DR_REG_FPSR, "fpsr"},
                 {DR_REG_TPIDR_EL0, "tpidr_el0"}};
  for (const auto& s : sysregs)
    for (int t = 0; t < 32; ++t) {
      emit(INSTR_CREATE_mrs(dc, opnd_create_reg(xreg(t, false)), opnd_create_reg(s.reg)),
           "mrs " + xname(t, false) + ", " + s.name);
      emit(INSTR_CREATE_msr(dc, opnd_create_reg(s.reg), opnd_create_reg(xreg(t, false))),
           std::string("msr ") + s.name + ", " + xname(t, false));
    }
}

void move_wide() {
  const int values[] = {0, 1, 0x1234, 0x8000, 0xffff};
  for (int d = 0; d < 32; ++d)
    for (int shift = 0; shift < 64; shift += 16) {
      const int value = values[(d + shift / 16) % 5];
      const std::string tail = ", #" + std::to_string(value) + ", lsl #" + std::to_string(shift);
      emit(INSTR_CREATE_movz(dc, opnd_create_reg(xreg(d, false)), OPND_CREATE_INT(value),
                             OPND_CREATE_INT(shift)),
           "movz " + xname(d, false) + tail);
      emit(INSTR_CREATE_movk(dc, opnd_create_reg(xreg(d, false)), OPND_CREATE_INT(value),
                             OPND_CREATE_INT(shift)),
           "movk " + xname(d, false) + tail);
      if (shift < 32)
        emit(INSTR_CREATE_movk(dc, opnd_create_reg(wreg(d, false)), OPND_CREATE_INT(value),
                               OPND_CREATE_INT(shift)),
             "movk " + wname(d, false) + tail);
    }
}

void branches() {
  for (int n = 0; n < 31; ++n) {
    emit(INSTR_CREATE_br(dc, opnd_create_reg(xreg(n, false))), "br " + xname(n, false));
    emit(INSTR_CREATE_blr(dc, opnd_create_reg(xreg(n, false))), "blr " + xname(n, false));
    emit(INSTR_CREATE_ret(dc, opnd_create_reg(xreg(n, false))), "ret " + xname(n, false));
  }
  const long offsets[] = {-(1l << 27), -(1l << 20) - 4, -4, 0, 4, 1024, (1l << 27) - 4};
  byte* const at = reinterpret_cast<byte*>(uintptr_t{0x400000});
  for (long off : offsets)
    emit(INSTR_CREATE_b(dc, opnd_create_pc(at + off)),
         "b ." + std::string(off < 0 ? "" : "+") + std::to_string(off));
  const long near[] = {-(1l << 20), -4, 0, 8, 4096, (1l << 20) - 4};
  for (int t = 0; t < 32; ++t) {
    const long off = near[t % 6];
    const std::string target = " ." + std::string(off < 0 ? "" : "+") + std::to_string(off);
    emit(INSTR_CREATE_cbz(dc, opnd_create_pc(at + off), opnd_create_reg(xreg(t, false))),
         "cbz " + xname(t, false) + "," + target);
    emit(INSTR_CREATE_cbz(dc, opnd_create_pc(at + off), opnd_create_reg(wreg(t, false))),
         "cbz " + wname(t, false) + "," + target);
  }
  emit(INSTR_CREATE_nop(dc), "nop");
}

} // namespace

int main() {
  add_sub_immediate();
  add_sub_register();
  for (const data_kind* k : {&kX, &kW, &kQ}) {
    load_store(*k);
    pairs(*k);
  }
  system_moves();
  move_wide();
  branches();
  return failures ? 1 : 0;
}
