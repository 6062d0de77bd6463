/* Multi-client manager extension: ordered events, per-thread storage and
 * emulation markers. */
#ifndef _DRMGR_H_
#define _DRMGR_H_ 1

#include "dr_api.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Orders callbacks of the same event: lower priority runs first. */
typedef struct _drmgr_priority_t {
  size_t struct_size;
  const char* name;
  const char* before;
  const char* after;
  int priority;
} drmgr_priority_t;

typedef dr_emit_flags_t (*drmgr_xform_cb_t)(void* drcontext, void* tag, instrlist_t* bb,
                                            bool for_trace, bool translating);

/* Describes the application instruction that a bracketed sequence emulates. */
typedef struct _emulated_instr_t {
  size_t size;
  app_pc pc;
  instr_t* instr;
} emulated_instr_t;

bool drmgr_init(void);
void drmgr_exit(void);

bool drmgr_register_bb_app2app_event(drmgr_xform_cb_t func, drmgr_priority_t* priority);
bool drmgr_unregister_bb_app2app_event(drmgr_xform_cb_t func);

bool drmgr_register_thread_init_event(void (*func)(void* drcontext));
bool drmgr_unregister_thread_init_event(void (*func)(void* drcontext));
bool drmgr_register_thread_exit_event(void (*func)(void* drcontext));
bool drmgr_unregister_thread_exit_event(void (*func)(void* drcontext));

int drmgr_register_tls_field(void);
bool drmgr_unregister_tls_field(int idx);
void* drmgr_get_tls_field(void* drcontext, int idx);
bool drmgr_set_tls_field(void* drcontext, int idx, void* value);
/* Generated code that loads the current thread's field idx into reg. */
bool drmgr_insert_read_tls_field(void* drcontext, int idx, instrlist_t* ilist, instr_t* where,
                                 reg_id_t reg);

bool drmgr_insert_emulation_start(void* drcontext, instrlist_t* ilist, instr_t* where,
                                  emulated_instr_t* instr);
void drmgr_insert_emulation_end(void* drcontext, instrlist_t* ilist, instr_t* where);
bool drmgr_is_emulation_start(instr_t* instr);
bool drmgr_is_emulation_end(instr_t* instr);
bool drmgr_get_emulated_instr_data(instr_t* instr, emulated_instr_t* emulated);

#ifdef __cplusplus
}
#endif

#endif
