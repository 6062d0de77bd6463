// Building a fragment: the block at a faulting address, the client's
// rewriting, and the encoding into the code cache.
#include "block.h"

#include <cstdio>
#include <cstring>

#include "branch_entry.h"
#include "code_retire.h"
#include "emit.h"
#include "fragments.h"
#include "runtime.h"
#include "sites.h"

namespace {

// A block is a run of consecutive SVE words, with the plain data-processing
// words between them: none of them branches, reads the pc or touches X28 on
// the host, so the run can move into the cache as it is. Long runs are cut to
// keep fragments small.
constexpr int kMaxBlockWords = 32;
constexpr uintptr_t kPageSize = 4096;

uint32_t word_at(const byte* pc) {
  uint32_t word;
  std::memcpy(&word, pc, 4);
  return word;
}

// The word the application has at pc, in the build's memory: at a patched
// site memory holds the branch instead.
instr_t* app_word(void* drcontext, app_pc pc) {
  bool on_heap = false;
  auto* bits = static_cast<byte*>(ir_alloc(drcontext, 4, &on_heap));
  const uint32_t word = application_word(pc);
  std::memcpy(bits, &word, 4);
  instr_t* instr = instr_create(drcontext);
  instr_set_raw_bits(instr, bits, 4);
  instr_set_translation(instr, pc);
  instr->flags |= INSTR_FROM_APP;
  return instr;
}

bool same_page(const byte* a, const byte* b) {
  return (reinterpret_cast<uintptr_t>(a) ^ reinterpret_cast<uintptr_t>(b)) < kPageSize;
}

// The first SVE word that the client left in place ends the block: on this
// processor it can only raise the signal again, which belongs to the
// application at that word's own address. Returns where the fragment hands
// control back.
app_pc cut_at_first_unchanged(void* drcontext, instrlist_t* bb, app_pc end) {
  for (instr_t* i = instrlist_first(bb); i; i = instr_get_next(i)) {
    if ((i->flags & (INSTR_FROM_APP | INSTR_FPCR_PROBE)) != INSTR_FROM_APP) continue;
    if (!is_sve_word(word_at(i->raw_bits))) continue;
    const app_pc resume = i->translation;
    while (instr_t* rest = instrlist_last(bb)) {
      instrlist_remove(bb, rest);
      instr_destroy(drcontext, rest);
      if (rest == i) break;
    }
    return resume;
  }
  return end;
}

void replace_probe(void* drcontext, instrlist_t* bb) {
  for (instr_t* i = instrlist_first(bb); i; i = instr_get_next(i)) {
    if (!(i->flags & INSTR_FPCR_PROBE)) continue;
    instrlist_preinsert(bb, i, fpcr_probe_end(drcontext));
    instrlist_remove(bb, i);
    return;
  }
}

[[noreturn]] void cannot_encode(app_pc tag, instr_t* instr) {
  std::fprintf(stderr,
               "zorvo: the block at %p holds an instruction the runtime cannot encode "
               "(opcode %d)\n",
               static_cast<void*>(tag), instr->opcode);
  dr_abort();
}

[[noreturn]] void out_of_memory(app_pc tag) {
  std::fprintf(stderr, "zorvo: no memory left for the fragment of the block at %p\n",
               static_cast<void*>(tag));
  dr_abort();
}

// The condition of the loop branch that ends the block, taken out of the
// list, when the client left it there; -1 when there is none. The exit then
// carries it out.
int take_loop_branch(void* drcontext, instrlist_t* bb, app_pc tag) {
  instr_t* last = instrlist_last(bb);
  if (last == nullptr || !(last->flags & INSTR_FROM_APP) || last->raw_length != 4) return -1;
  const uint32_t word = word_at(last->raw_bits);
  if (!is_conditional_branch_to(word, last->translation, tag)) return -1;
  instrlist_remove(bb, last);
  instr_destroy(drcontext, last);
  return int(word & 0xf);
}

// The conditional branches out of the middle of the block that are still
// the application's words: each leaves by an exit of its own, behind the
// block's exit. Fixed arrays: this runs in the signal handler.
struct side_exits {
  instr_t* branch[kMaxBlockWords];
  instr_t* exit[kMaxBlockWords];
  int count = 0;
};

void find_side_branches(instrlist_t* bb, side_exits* sides) {
  for (instr_t* i = instrlist_first(bb); i && sides->count < kMaxBlockWords; i = instr_get_next(i))
    if ((i->flags & INSTR_FROM_APP) && i->raw_length == 4 &&
        is_conditional_branch(word_at(i->raw_bits)))
      sides->branch[sides->count++] = i;
}

// Points each side branch at its exit, now that the layout is known.
void link_side_exits(instrlist_t* bb, const side_exits& sides) {
  size_t branch_at[kMaxBlockWords] = {}, exit_at[kMaxBlockWords] = {};
  size_t offset = 0;
  for (instr_t* i = instrlist_first(bb); i; i = instr_get_next(i)) {
    for (int k = 0; k < sides.count; ++k) {
      if (i == sides.branch[k]) branch_at[k] = offset;
      if (i == sides.exit[k]) exit_at[k] = offset;
    }
    offset += encoded_length(i);
  }
  for (int k = 0; k < sides.count; ++k) {
    const uint32_t condition = word_at(sides.branch[k]->raw_bits) & 0xf;
    const uint32_t imm19 = uint32_t((exit_at[k] - branch_at[k]) / 4) & 0x7ffff;
    const uint32_t word = 0x54000000u | imm19 << 5 | condition;
    std::memcpy(sides.branch[k]->raw_bits, &word, 4);
  }
}

// Encodes bb into the cache, exiting to resume; returns the code that
// follows the branch entry. Null when memory ran out.
byte* encode_fragment(rt_thread* t, app_pc tag, instrlist_t* bb, app_pc resume) {
  void* dc = t;
  const int loop_condition = take_loop_branch(dc, bb, tag);
  side_exits sides;
  find_side_branches(bb, &sides);
  prepend_branch_entry(dc, bb);
  size_t size = 0;
  for (instr_t* i = instrlist_first(bb); i; i = instr_get_next(i)) size += encoded_length(i);
  // The exit: a load and a branch, or a load and the trap with its target;
  // for a loop also a b.cond and the branch or trap back; one more load and
  // branch or trap for each side branch.
  const size_t exit_size = (loop_condition < 0 ? 16 : 32) + 16 * size_t(sides.count);
  bool direct = false;
  byte* code = reserve_code(size + exit_size, resume, &direct);
  if (code == nullptr) return nullptr;
  if (loop_condition < 0)
    append_exit(dc, bb, resume, direct);
  else
    append_exit(dc, bb, resume, direct, tag, uint32_t(loop_condition));
  for (int k = 0; k < sides.count; ++k) {
    instr_t* before = instrlist_last(bb);
    const instr_t* branch = sides.branch[k];
    append_exit(dc, bb, conditional_branch_target(word_at(branch->raw_bits), branch->translation),
                direct);
    sides.exit[k] = instr_get_next(before);
  }
  link_side_exits(bb, sides);
  byte* pc = code;
  for (instr_t* i = instrlist_first(bb); i; i = instr_get_next(i)) {
    pc = instr_encode_to_copy(dc, i, pc, pc);
    if (pc == nullptr) cannot_encode(tag, i);
  }
  __builtin___clear_cache(reinterpret_cast<char*>(code), reinterpret_cast<char*>(pc));
  counters.code_bytes += size_t(pc - code);
  return code + kBranchEntryLength;
}

} // namespace

bool is_sve_word(uint32_t word) { return ((word >> 25) & 0xf) == 0x2; }

namespace {

// The classes of plain data-processing words, and which of the fields Rd
// (4:0), Rn (9:5) and Rm (20:16) name registers.
struct plain_class {
  uint32_t mask, value;
  bool rn, rm;
};
constexpr plain_class kPlainClasses[] = {
    {0x1f800000, 0x11000000, true, false},  // add, sub (immediate)
    {0x1f800000, 0x12000000, true, false},  // and, orr, eor, ands (immediate)
    {0x1f800000, 0x12800000, false, false}, // movn, movz, movk
    {0x1f800000, 0x13000000, true, false},  // sbfm, bfm, ubfm
    {0x1f000000, 0x0a000000, true, true},   // logical (shifted register)
    {0x1f200000, 0x0b000000, true, true},   // add, sub (shifted register)
    {0x1f200000, 0x0b200000, true, true},   // add, sub (extended register)
};

uint32_t field(uint32_t word, int lo) { return (word >> lo) & 31; }

} // namespace

bool is_plain_data_word(uint32_t word) {
  for (const plain_class& c : kPlainClasses) {
    if ((word & c.mask) != c.value) continue;
    if (field(word, 0) == 28 || (c.rn && field(word, 5) == 28) || (c.rm && field(word, 16) == 28))
      return false;
    // Encodings the class leaves unallocated stay out: they must fault where
    // the application has them.
    const bool wide = word >> 31, n_bit = word >> 22 & 1, shift_high = word >> 15 & 1;
    switch (c.value) {
    case 0x12000000:
      return wide || !n_bit;
    case 0x12800000:
      return (word >> 29 & 3) != 1 && (wide || !(word >> 22 & 1));
    case 0x13000000:
      return (word >> 29 & 3) != 3 && wide == n_bit && (wide || !(shift_high || word >> 21 & 1));
    case 0x0a000000:
      return wide || !shift_high;
    case 0x0b000000:
      return (word >> 22 & 3) != 3 && (wide || !shift_high);
    case 0x0b200000:
      return (word >> 22 & 3) == 0 && (word >> 10 & 7) <= 4;
    default:
      return true;
    }
  }
  return false;
}

bool is_conditional_branch(uint32_t word) { return (word & 0xff000010) == 0x54000000; }

app_pc conditional_branch_target(uint32_t word, app_pc at) {
  const int32_t imm19 = static_cast<int32_t>(word << 8) >> 13;
  return at + 4 * int64_t{imm19};
}

bool is_conditional_branch_to(uint32_t word, app_pc at, app_pc target) {
  return is_conditional_branch(word) && conditional_branch_target(word, at) == target;
}

int block_words(app_pc pc) {
  int n = 0, through_last_sve = 0;
  while (n < kMaxBlockWords && same_page(pc, pc + 4 * n)) {
    const uint32_t word = application_word(pc + 4 * n);
    if (is_sve_word(word)) {
      through_last_sve = n + 1;
    } else if (n == 0) {
      break;
    } else if (is_conditional_branch_to(word, pc + 4 * n, pc)) {
      return n + 1; // a loop: the words up to a conditional branch back to the first
    } else if (!is_plain_data_word(word) && !is_conditional_branch(word)) {
      break;
    }
    ++n;
  }
  return through_last_sve;
}

fragment* build_fragment(rt_thread* t, app_pc tag) {
  void* dc = t;
  instrlist_t* bb = instrlist_create(dc);
  instrlist_append(bb, fpcr_probe(dc, tag));
  const int words = block_words(tag);
  for (int n = 0; n < words; ++n) instrlist_append(bb, app_word(dc, tag + 4 * n));

  run_app2app_events(dc, tag, bb);
  ++counters.blocks_built;

  const app_pc resume = cut_at_first_unchanged(dc, bb, tag + 4 * words);
  byte* code = nullptr;
  if (resume != tag) {
    prepend_fpcr_probe(dc, bb);
    replace_probe(dc, bb);
    code = encode_fragment(t, tag, bb, resume);
    if (code == nullptr) out_of_memory(tag);
    ++counters.fragments;
    for (app_pc pc = tag; pc < resume; pc += 4)
      counters.words_translated += is_sve_word(application_word(pc));
  }
  arena_reset(&t->build_arena);
  fragment* f = add_fragment(tag, code);
  if (f == nullptr) out_of_memory(tag);
  return f;
}

byte* fragment_for(rt_thread* t, app_pc tag, bool may_build, bool link, bool* none) {
  code_lock held{code_lock::signals_blocked};
  seen_outside_fragments(t);
  *none = false;
  fragment* f = find_fragment(tag);
  // Code mapped anew, or rewritten, at the same address.
  if (f != nullptr && f->fingerprint != code_fingerprint(tag)) {
    retire_fragment(f, next_retirement());
    f = nullptr;
  }
  if (f == nullptr && !may_build) {
    *none = true;
    return nullptr;
  }
  if (f == nullptr) {
    f = build_fragment(t, tag);
    f->fingerprint = code_fingerprint(tag);
  }
  byte* const code = f->code;
  if (code != nullptr && link) link_site(t, tag, code);
  return code;
}
