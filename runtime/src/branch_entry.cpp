#include "branch_entry.h"

#include <cstring>

#include "thread.h"

namespace {

// A stub reads the thread pointer and a site number through an add of the
// high part and a load at the low part, so both stay under 16 MiB.
constexpr ptrdiff_t kLongReach = ptrdiff_t(1) << 24;

opnd_t x(int n) { return opnd_create_reg(reg_id_t(DR_REG_X0 + n)); }
opnd_t at(reg_id_t base, int disp, opnd_size_t size) {
  return opnd_create_base_disp(base, DR_REG_NULL, 0, disp, size);
}
opnd_t sp() { return opnd_create_reg(DR_REG_XSP); }

void append(instrlist_t* il, instr_t* instr) {
  instr_set_meta(instr);
  instrlist_append(il, instr);
}

// Xd = [Xn + offset] for an offset below 16 MiB.
void load_far(void* dc, instrlist_t* il, int d, int n, ptrdiff_t offset) {
  append(il, INSTR_CREATE_add_shift(dc, x(d), x(n), OPND_CREATE_INT(offset >> 12),
                                    OPND_CREATE_LSL(), OPND_CREATE_INT(12)));
  append(il, INSTR_CREATE_ldr(dc, x(d), at(reg_id_t(DR_REG_X0 + d), int(offset & 0xfff), OPSZ_8)));
}

// X0 and X1 back from the application's stack.
void pop_x0_x1(void* dc, instrlist_t* il) {
  append(il, INSTR_CREATE_ldp(dc, x(0), x(1), at(DR_REG_XSP, 0, OPSZ_16)));
  append(il, INSTR_CREATE_add(dc, sp(), sp(), OPND_CREATE_INT(16)));
}

bool encode_list(void* dc, instrlist_t* il, byte* pc, byte* end) {
  for (instr_t* i = instrlist_first(il); i && pc; i = instr_get_next(i))
    pc = instr_encode_to_copy(dc, i, pc, pc);
  instrlist_clear_and_destroy(dc, il);
  return pc == end;
}

} // namespace

void prepend_branch_entry(void* dc, instrlist_t* bb) {
  instrlist_t* entry = instrlist_create(dc);
  const opnd_t count = at(DR_REG_X28, kBranchEntriesOffset, OPSZ_8);
  append(entry, INSTR_CREATE_ldr(dc, x(0), count));
  append(entry, INSTR_CREATE_add(dc, x(0), x(0), OPND_CREATE_INT(1)));
  append(entry, INSTR_CREATE_str(dc, count, x(0)));
  pop_x0_x1(dc, entry);
  while (instr_t* last = instrlist_last(entry)) {
    instrlist_remove(entry, last);
    instrlist_prepend(bb, last);
  }
  instrlist_destroy(dc, entry);
}

// Every register is the application's on arrival, and the stolen register is
// not set up, so X0 and X1 go to the application's stack for the lookup (SP
// stays 16-byte aligned, and a signal meanwhile lands below the pair). The
// thread is found through TPIDR_EL0, no flags are touched, and the fragment
// is entered with X28 holding the thread block, as the signal path does.
bool write_site_stub(void* dc, byte* stub, app_pc site, uint32_t word, uint32_t number,
                     ptrdiff_t tls_offset) {
  const ptrdiff_t entry_offset = ptrdiff_t(number) * ptrdiff_t(sizeof(byte*));
  if (tls_offset < 0 || tls_offset >= kLongReach || tls_offset % 8 != 0 ||
      entry_offset >= kLongReach)
    return false;
  const opnd_t miss = opnd_create_pc(stub + kStubTrapOffset - 8);
  instrlist_t* il = instrlist_create(dc);
  append(il, INSTR_CREATE_sub(dc, sp(), sp(), OPND_CREATE_INT(16)));
  append(il, INSTR_CREATE_stp(dc, at(DR_REG_XSP, 0, OPSZ_16), x(0), x(1)));
  append(il, INSTR_CREATE_mrs(dc, x(0), opnd_create_reg(DR_REG_TPIDR_EL0)));
  load_far(dc, il, 0, 0, tls_offset);
  append(il, INSTR_CREATE_cbz(dc, miss, x(0)));
  append(il, INSTR_CREATE_ldr(dc, x(1), at(DR_REG_X0, kSiteEntriesOffset, OPSZ_8)));
  append(il, INSTR_CREATE_cbz(dc, miss, x(1)));
  load_far(dc, il, 1, 1, entry_offset);
  append(il, INSTR_CREATE_cbz(dc, miss, x(1)));
  append(il, INSTR_CREATE_str(dc, at(DR_REG_X0, kAppX28Offset, OPSZ_8), x(28)));
  append(il, INSTR_CREATE_add(dc, x(28), x(0), OPND_CREATE_INT(0)));
  append(il, INSTR_CREATE_br(dc, x(1)));
  pop_x0_x1(dc, il);
  if (!encode_list(dc, il, stub, stub + kStubTrapOffset)) return false;
  std::memcpy(stub + kStubTrapOffset, &word, 4);
  std::memset(stub + kStubTrapOffset + 4, 0, kStubSiteOffset - kStubTrapOffset - 4);
  std::memcpy(stub + kStubSiteOffset, &site, sizeof site);
  return true;
}

uint32_t branch_word(void* dc, app_pc from, byte* to) {
  instrlist_t* il = instrlist_create(dc);
  append(il, INSTR_CREATE_b(dc, opnd_create_pc(to)));
  uint32_t word = 0;
  byte* const end =
      instr_encode_to_copy(dc, instrlist_first(il), reinterpret_cast<byte*>(&word), from);
  instrlist_clear_and_destroy(dc, il);
  return end != nullptr ? word : 0;
}
