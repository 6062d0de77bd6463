// Building a fragment: the block at a faulting address, the client's
// rewriting, and the encoding into the thread's code cache.
#include "block.h"

#include <cstdio>
#include <cstring>

#include "branch_entry.h"
#include "emit.h"
#include "fragments.h"
#include "runtime.h"
#include "sites.h"

namespace {

// A block is a run of consecutive SVE words: none of them branches, reads
// the pc or touches X28 on the host, so the run can move into the cache as
// it is. Long runs are cut to keep fragments small.
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

// Encodes bb into the cache, exiting to resume; returns the code that
// follows the branch entry. Null when memory ran out.
byte* encode_fragment(rt_thread* t, app_pc tag, instrlist_t* bb, app_pc resume) {
  void* dc = t;
  prepend_branch_entry(dc, bb);
  size_t size = 0;
  for (instr_t* i = instrlist_first(bb); i; i = instr_get_next(i)) size += encoded_length(i);
  // The exit: a load and a branch, or a load and the trap with its target.
  const size_t exit_size = 16;
  bool direct = false;
  byte* code = reserve_code(t, size + exit_size, resume, &direct);
  if (code == nullptr) return nullptr;
  append_exit(dc, bb, resume, direct);
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

int block_words(app_pc pc) {
  int n = 0;
  while (n < kMaxBlockWords && same_page(pc, pc + 4 * n) &&
         is_sve_word(application_word(pc + 4 * n)))
    ++n;
  return n;
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
    counters.words_translated += size_t(resume - tag) / 4;
  }
  arena_reset(&t->build_arena);
  return add_fragment(t, tag, code);
}
