/* Runtime services for clients: contexts, memory, files, logging. */
#ifndef _DR_TOOLS_H_
#define _DR_TOOLS_H_ 1

#include "dr_defines.h"

#ifdef __cplusplus
extern "C" {
#endif

void* dr_get_current_drcontext(void);
/* Whether the application has a handler of its own for sig (SIGSEGV or
 * SIGBUS). A fault handler of the client that rewrites the context it was
 * given into the application's state at an application instruction, and
 * returns, hands the fault to that handler, as raised at that instruction. */
bool dr_app_handles_signal_zorvo(int sig);
/* The client's per-thread record of the application's registers: `bytes`
 * bytes at the address in TLS field tls_idx. An application's signal
 * handler may interrupt the client's code anywhere and run it again; the
 * runtime keeps the record for the interrupted code. app_registers tells,
 * for a thread interrupted on the runtime's stack, the application's stack
 * pointer, and, returning true when they are in the record, the low 128 bits
 * of the application's V0-V31 (32 x 16 bytes into vectors). */
void dr_register_interrupted_record_zorvo(int tls_idx, size_t bytes,
                                          bool (*app_registers)(const void* record, uint64_t* sp,
                                                                void* vectors));
/* Per-thread memory; it comes back zeroed. */
void* dr_thread_alloc(void* drcontext, size_t size);
void dr_thread_free(void* drcontext, void* mem, size_t size);
void* dr_global_alloc(size_t size);
void dr_global_free(void* mem, size_t size);

bool dr_set_client_name(const char* name, const char* report_URL);
const char* dr_get_application_name(void);
process_id_t dr_get_process_id(void);
thread_id_t dr_get_thread_id(void* drcontext);

ssize_t dr_fprintf(file_t f, const char* fmt, ...) __attribute__((format(printf, 2, 3)));
ssize_t dr_write_file(file_t f, const void* buf, size_t count);
int dr_snprintf(char* buf, size_t max, const char* fmt, ...) __attribute__((format(printf, 3, 4)));
/* Writes to the runtime's log when its level is at least level. */
void dr_log(void* drcontext, uint mask, uint level, const char* fmt, ...)
    __attribute__((format(printf, 4, 5)));
/* Where the application's code at pc can be read: pc itself, or, where the
 * runtime has changed the word at pc, a copy of the word the application has
 * there. */
app_pc dr_app_pc_for_decoding(app_pc pc);
/* Ends the process at once, without the exit event. */
void dr_abort(void) __attribute__((noreturn));
void dr_abort_with_code(int exit_code) __attribute__((noreturn));

#ifdef __cplusplus
}
#endif

#define DR_ASSERT_MSG(x, msg)                                                                      \
  ((void)((!(x)) ? (dr_fprintf(STDERR, "ASSERT FAILURE: %s:%d: %s (%s)\n", __FILE__, __LINE__, #x, \
                               msg),                                                               \
                    dr_abort(), 0)                                                                 \
                 : 0))
#define DR_ASSERT(x) DR_ASSERT_MSG(x, "")

#endif
