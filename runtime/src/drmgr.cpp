// The event registries and the drmgr and drreg extensions. Clients register
// while the process starts, before a second thread exists; the lists are only
// read afterwards.
#include <cstring>

#include "drreg.h"
#include "ir.h"
#include "runtime.h"
#include "thread.h"

namespace {

constexpr int kMaxCallbacks = 16;

template <typename F> struct callback_list {
  F funcs[kMaxCallbacks];
  int priorities[kMaxCallbacks];
  int count;

  // Lower priority first; equal priorities keep their registration order.
  bool add(F f, int priority) {
    if (count == kMaxCallbacks) return false;
    int at = count;
    while (at > 0 && priorities[at - 1] > priority) {
      funcs[at] = funcs[at - 1];
      priorities[at] = priorities[at - 1];
      --at;
    }
    funcs[at] = f;
    priorities[at] = priority;
    ++count;
    return true;
  }

  bool remove(F f) {
    for (int i = 0; i < count; ++i) {
      if (funcs[i] != f) continue;
      for (int j = i + 1; j < count; ++j) {
        funcs[j - 1] = funcs[j];
        priorities[j - 1] = priorities[j];
      }
      --count;
      return true;
    }
    return false;
  }
};

callback_list<drmgr_xform_cb_t> app2app;
callback_list<void (*)(void*)> thread_init;
callback_list<void (*)(void*)> thread_exit;
callback_list<void (*)()> process_exit;
std::atomic<int> tls_fields_taken;

instr_t* emulation_label(void* drcontext, uint16_t kind) {
  instr_t* label = INSTR_CREATE_label(drcontext);
  label->flags |= kind | INSTR_META;
  return label;
}

} // namespace

void run_thread_init_events(void* drcontext) {
  for (int i = 0; i < thread_init.count; ++i) thread_init.funcs[i](drcontext);
}

void run_thread_exit_events(void* drcontext) {
  for (int i = 0; i < thread_exit.count; ++i) thread_exit.funcs[i](drcontext);
}

void run_app2app_events(void* drcontext, void* tag, instrlist_t* bb) {
  for (int i = 0; i < app2app.count; ++i) app2app.funcs[i](drcontext, tag, bb, false, false);
}

void run_exit_events() {
  // A copy: an exit event may unregister itself or others.
  const callback_list<void (*)()> events = process_exit;
  for (int i = 0; i < events.count; ++i) events.funcs[i]();
}

extern "C" {

void dr_register_exit_event(void (*func)(void)) { process_exit.add(func, 0); }
bool dr_unregister_exit_event(void (*func)(void)) { return process_exit.remove(func); }

bool drmgr_init(void) { return true; }
void drmgr_exit(void) {}

bool drmgr_register_bb_app2app_event(drmgr_xform_cb_t func, drmgr_priority_t* priority) {
  if (func == nullptr) return false;
  return app2app.add(func, priority ? priority->priority : 0);
}

bool drmgr_unregister_bb_app2app_event(drmgr_xform_cb_t func) { return app2app.remove(func); }

bool drmgr_register_thread_init_event(void (*func)(void*)) { return thread_init.add(func, 0); }
bool drmgr_unregister_thread_init_event(void (*func)(void*)) { return thread_init.remove(func); }
bool drmgr_register_thread_exit_event(void (*func)(void*)) { return thread_exit.add(func, 0); }
bool drmgr_unregister_thread_exit_event(void (*func)(void*)) { return thread_exit.remove(func); }

int drmgr_register_tls_field(void) {
  const int idx = tls_fields_taken.fetch_add(1);
  return idx < kMaxTlsFields ? idx : -1;
}

bool drmgr_unregister_tls_field(int idx) { return idx >= 0 && idx < kMaxTlsFields; }

void* drmgr_get_tls_field(void* drcontext, int idx) {
  return static_cast<rt_thread*>(drcontext)->tls_fields[idx];
}

bool drmgr_set_tls_field(void* drcontext, int idx, void* value) {
  if (idx < 0 || idx >= kMaxTlsFields) return false;
  static_cast<rt_thread*>(drcontext)->tls_fields[idx] = value;
  return true;
}

bool drmgr_insert_read_tls_field(void* drcontext, int idx, instrlist_t* ilist, instr_t* where,
                                 reg_id_t reg) {
  if (idx < 0 || idx >= kMaxTlsFields || !reg_is_gpr(reg) || reg_get_size(reg) != OPSZ_8 ||
      reg == DR_REG_X28)
    return false;
  const int offset = int(offsetof(rt_thread, tls_fields)) + idx * int(sizeof(void*));
  instrlist_meta_preinsert(
      ilist, where,
      INSTR_CREATE_ldr(drcontext, opnd_create_reg(reg), OPND_CREATE_MEM64(DR_REG_X28, offset)));
  return true;
}

bool drmgr_insert_emulation_start(void* drcontext, instrlist_t* ilist, instr_t* where,
                                  emulated_instr_t* instr) {
  if (instr == nullptr || instr->size < sizeof(emulated_instr_t)) return false;
  instr_t* label = emulation_label(drcontext, INSTR_EMULATION_START);
  label->emulated = *instr;
  instrlist_meta_preinsert(ilist, where, label);
  return true;
}

void drmgr_insert_emulation_end(void* drcontext, instrlist_t* ilist, instr_t* where) {
  instrlist_meta_preinsert(ilist, where, emulation_label(drcontext, INSTR_EMULATION_END));
}

bool drmgr_is_emulation_start(instr_t* instr) {
  return (instr->flags & INSTR_EMULATION_START) != 0;
}

bool drmgr_is_emulation_end(instr_t* instr) { return (instr->flags & INSTR_EMULATION_END) != 0; }

bool drmgr_get_emulated_instr_data(instr_t* instr, emulated_instr_t* emulated) {
  if (!drmgr_is_emulation_start(instr)) return false;
  *emulated = instr->emulated;
  return true;
}

// The client shuts drreg down without having started it.
drreg_status_t drreg_exit(void) { return DRREG_SUCCESS; }

} // extern "C"
