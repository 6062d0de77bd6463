// Instructions and instruction lists.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "ir.h"
#include "thread.h"

void* ir_alloc(void* drcontext, size_t size, bool* on_malloc_heap) {
  *on_malloc_heap = drcontext == nullptr || drcontext == GLOBAL_DCONTEXT;
  if (*on_malloc_heap) return std::calloc(1, size);
  return arena_alloc(&static_cast<rt_thread*>(drcontext)->build_arena, size);
}

namespace {

instr_t* new_instr(void* drcontext) {
  bool on_heap = false;
  // Both allocators hand out zeroed memory.
  auto* instr = static_cast<instr_t*>(ir_alloc(drcontext, sizeof(instr_t), &on_heap));
  if (on_heap) instr->flags = INSTR_ON_MALLOC_HEAP;
  return instr;
}

instr_t* with_operands(instr_t* instr, int opcode, int num_dsts, int num_srcs) {
  instr->opcode = opcode;
  instr->num_dsts = static_cast<uint8_t>(num_dsts);
  instr->num_srcs = static_cast<uint8_t>(num_srcs);
  instr->flags |= INSTR_OPERANDS_VALID;
  return instr;
}

instr_t* with_opnds(void* drcontext, int opcode, std::initializer_list<opnd_t> dsts,
                    std::initializer_list<opnd_t> srcs) {
  instr_t* instr = with_operands(new_instr(drcontext), opcode, int(dsts.size()), int(srcs.size()));
  std::copy(dsts.begin(), dsts.end(), instr->dsts);
  std::copy(srcs.begin(), srcs.end(), instr->srcs);
  return instr;
}

// Application instructions read from memory say what they are only when asked.
void ensure_decoded(instr_t* instr) {
  if (!(instr->flags & INSTR_OPERANDS_VALID) && (instr->flags & INSTR_RAW_VALID))
    decode_app_instr(instr);
}

void link_before(instrlist_t* ilist, instr_t* where, instr_t* instr) {
  instr->next = where;
  instr->prev = where ? where->prev : ilist->last;
  if (instr->prev)
    instr->prev->next = instr;
  else
    ilist->first = instr;
  if (where)
    where->prev = instr;
  else
    ilist->last = instr;
}

} // namespace

extern "C" {

instr_t* instr_create(void* drcontext) { return new_instr(drcontext); }

void instr_destroy(void*, instr_t* instr) {
  // Arena instructions go when their block has been built.
  if (instr->flags & INSTR_ON_MALLOC_HEAP) std::free(instr);
}

instr_t* instr_build(void* drcontext, int opcode, int num_dsts, int num_srcs) {
  return with_operands(new_instr(drcontext), opcode, num_dsts, num_srcs);
}

instr_t* instr_create_0dst_0src(void* drcontext, int opcode) {
  return with_opnds(drcontext, opcode, {}, {});
}

instr_t* instr_create_0dst_1src(void* drcontext, int opcode, opnd_t src) {
  return with_opnds(drcontext, opcode, {}, {src});
}

instr_t* instr_create_0dst_2src(void* drcontext, int opcode, opnd_t src1, opnd_t src2) {
  return with_opnds(drcontext, opcode, {}, {src1, src2});
}

instr_t* instr_create_1dst_1src(void* drcontext, int opcode, opnd_t dst, opnd_t src) {
  return with_opnds(drcontext, opcode, {dst}, {src});
}

instr_t* instr_create_1dst_2src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2) {
  return with_opnds(drcontext, opcode, {dst}, {src1, src2});
}

instr_t* instr_create_1dst_3src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2,
                                opnd_t src3) {
  return with_opnds(drcontext, opcode, {dst}, {src1, src2, src3});
}

instr_t* instr_create_1dst_4src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2,
                                opnd_t src3, opnd_t src4) {
  return with_opnds(drcontext, opcode, {dst}, {src1, src2, src3, src4});
}

instr_t* instr_create_2dst_1src(void* drcontext, int opcode, opnd_t dst1, opnd_t dst2, opnd_t src) {
  return with_opnds(drcontext, opcode, {dst1, dst2}, {src});
}

int instr_get_opcode(instr_t* instr) {
  ensure_decoded(instr);
  return instr->opcode;
}

void instr_set_opcode(instr_t* instr, int opcode) {
  ensure_decoded(instr);
  instr->opcode = opcode;
  instr->flags &= ~INSTR_RAW_VALID;
}

int instr_num_dsts(instr_t* instr) {
  ensure_decoded(instr);
  return instr->num_dsts;
}

int instr_num_srcs(instr_t* instr) {
  ensure_decoded(instr);
  return instr->num_srcs;
}

opnd_t instr_get_dst(instr_t* instr, uint pos) {
  ensure_decoded(instr);
  return pos < instr->num_dsts ? instr->dsts[pos] : opnd_create_null();
}

opnd_t instr_get_src(instr_t* instr, uint pos) {
  ensure_decoded(instr);
  return pos < instr->num_srcs ? instr->srcs[pos] : opnd_create_null();
}

void instr_set_dst(instr_t* instr, uint pos, opnd_t opnd) {
  ensure_decoded(instr);
  if (pos < instr->num_dsts) instr->dsts[pos] = opnd;
  instr->flags &= ~INSTR_RAW_VALID;
}

void instr_set_src(instr_t* instr, uint pos, opnd_t opnd) {
  ensure_decoded(instr);
  if (pos < instr->num_srcs) instr->srcs[pos] = opnd;
  instr->flags &= ~INSTR_RAW_VALID;
}

byte* instr_get_raw_bits(instr_t* instr) { return instr->raw_bits; }

void instr_set_raw_bits(instr_t* instr, byte* addr, uint length) {
  instr->raw_bits = addr;
  instr->raw_length = length;
  instr->flags |= INSTR_RAW_VALID;
  instr->flags &= ~INSTR_OPERANDS_VALID;
}

void instr_allocate_raw_bits(void* drcontext, instr_t* instr, uint num_bytes) {
  bool on_heap = false;
  auto* bits = static_cast<byte*>(ir_alloc(drcontext, num_bytes, &on_heap));
  std::memset(bits, 0, num_bytes);
  instr_set_raw_bits(instr, bits, num_bytes);
}

instr_t* instr_set_raw_word(instr_t* instr, uint pos, uint word) {
  std::memcpy(instr->raw_bits + pos, &word, sizeof word);
  return instr;
}

void instr_set_raw_bits_valid(instr_t* instr, bool valid) {
  if (valid)
    instr->flags |= INSTR_RAW_VALID;
  else
    instr->flags &= ~INSTR_RAW_VALID;
}

bool instr_raw_bits_valid(instr_t* instr) { return (instr->flags & INSTR_RAW_VALID) != 0; }

int instr_length(void*, instr_t* instr) { return encoded_length(instr); }

app_pc instr_get_app_pc(instr_t* instr) { return instr->translation; }
app_pc instr_get_translation(instr_t* instr) { return instr->translation; }
instr_t* instr_set_translation(instr_t* instr, app_pc addr) {
  instr->translation = addr;
  return instr;
}

bool instr_is_app(instr_t* instr) { return !(instr->flags & INSTR_META); }
bool instr_is_meta(instr_t* instr) { return (instr->flags & INSTR_META) != 0; }
void instr_set_meta(instr_t* instr) { instr->flags |= INSTR_META; }
void instr_set_app(instr_t* instr) { instr->flags &= ~INSTR_META; }
bool instr_is_label(instr_t* instr) { return instr->opcode == OP_LABEL; }
void* instr_get_note(instr_t* instr) { return instr->note; }
void instr_set_note(instr_t* instr, void* value) { instr->note = value; }

instr_t* instr_get_next(instr_t* instr) { return instr->next; }
instr_t* instr_get_prev(instr_t* instr) { return instr->prev; }

instr_t* instr_get_next_app(instr_t* instr) {
  for (instr_t* i = instr->next; i; i = i->next)
    if (instr_is_app(i)) return i;
  return nullptr;
}

instrlist_t* instrlist_create(void* drcontext) {
  bool on_heap = false;
  auto* ilist = static_cast<instrlist_t*>(ir_alloc(drcontext, sizeof(instrlist_t), &on_heap));
  ilist->first = ilist->last = nullptr;
  ilist->on_malloc_heap = on_heap;
  return ilist;
}

void instrlist_destroy(void*, instrlist_t* ilist) {
  if (ilist->on_malloc_heap) std::free(ilist);
}

void instrlist_clear_and_destroy(void* drcontext, instrlist_t* ilist) {
  for (instr_t *i = ilist->first, *next; i; i = next) {
    next = i->next;
    instr_destroy(drcontext, i);
  }
  instrlist_destroy(drcontext, ilist);
}

instr_t* instrlist_first(instrlist_t* ilist) { return ilist->first; }
instr_t* instrlist_last(instrlist_t* ilist) { return ilist->last; }

instr_t* instrlist_first_app(instrlist_t* ilist) {
  instr_t* first = ilist->first;
  return first == nullptr || instr_is_app(first) ? first : instr_get_next_app(first);
}

void instrlist_append(instrlist_t* ilist, instr_t* instr) { link_before(ilist, nullptr, instr); }
void instrlist_prepend(instrlist_t* ilist, instr_t* instr) {
  link_before(ilist, ilist->first, instr);
}
void instrlist_preinsert(instrlist_t* ilist, instr_t* where, instr_t* instr) {
  link_before(ilist, where, instr);
}
void instrlist_postinsert(instrlist_t* ilist, instr_t* where, instr_t* instr) {
  link_before(ilist, where->next, instr);
}

void instrlist_meta_preinsert(instrlist_t* ilist, instr_t* where, instr_t* instr) {
  instr_set_meta(instr);
  link_before(ilist, where, instr);
}

void instrlist_meta_append(instrlist_t* ilist, instr_t* instr) {
  instr_set_meta(instr);
  link_before(ilist, nullptr, instr);
}

void instrlist_remove(instrlist_t* ilist, instr_t* instr) {
  if (instr->prev)
    instr->prev->next = instr->next;
  else
    ilist->first = instr->next;
  if (instr->next)
    instr->next->prev = instr->prev;
  else
    ilist->last = instr->prev;
  instr->prev = instr->next = nullptr;
}

} // extern "C"
