/* Basic types and definitions of the runtime interface (version 700 names). */
#ifndef _DR_DEFINES_H_
#define _DR_DEFINES_H_ 1

#include <stdarg.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#define DR_EXPORT __attribute__((visibility("default")))
#define LINK_ONCE __attribute__((weak))
#define DR_API
#define AARCH64 1
#define X64 1
#define LINUX 1
#define UNIX 1

typedef uint8_t byte;
typedef signed char sbyte;
typedef unsigned int uint;
typedef unsigned short ushort;
typedef uintptr_t ptr_uint_t;
typedef intptr_t ptr_int_t;
typedef ptr_uint_t reg_t;
typedef uint64_t uint64;
typedef int64_t int64;
typedef uint32_t uint32;
typedef int32_t int32;
typedef uint16_t uint16;
typedef unsigned char uchar;
typedef byte* app_pc;
typedef uint client_id_t;
typedef pid_t thread_id_t;
typedef pid_t process_id_t;

/* A file handle is a file descriptor. */
typedef int file_t;
#define INVALID_FILE -1

#ifdef __cplusplus
extern "C" {
#endif
/* Handles that stay usable after the application closes its own. */
extern file_t our_stdout;
extern file_t our_stderr;
extern file_t our_stdin;
#ifdef __cplusplus
}
#endif
#define STDOUT our_stdout
#define STDERR our_stderr
#define STDIN our_stdin

/* Stands for "no particular thread" where a context is asked for. */
#define GLOBAL_DCONTEXT ((void*)-1)

/* Log categories; every category together. */
#define DR_LOG_NONE 0x00000000
#define DR_LOG_ALL 0x00ffffff

/* Spill slots of the current thread, addressed from the stolen register. */
typedef enum {
  SPILL_SLOT_1 = 0,
  SPILL_SLOT_2 = 1,
  SPILL_SLOT_3 = 2,
  SPILL_SLOT_4 = 3,
  SPILL_SLOT_5 = 4,
  SPILL_SLOT_6 = 5,
  SPILL_SLOT_7 = 6,
  SPILL_SLOT_8 = 7,
  SPILL_SLOT_9 = 8,
  SPILL_SLOT_10 = 9,
  SPILL_SLOT_11 = 10,
  SPILL_SLOT_12 = 11,
  SPILL_SLOT_13 = 12,
  SPILL_SLOT_14 = 13,
  SPILL_SLOT_15 = 14,
  SPILL_SLOT_16 = 15,
  SPILL_SLOT_17 = 16,
  SPILL_SLOT_MAX = SPILL_SLOT_17
} dr_spill_slot_t;

/* What a block event asks of the runtime; nothing beyond the default here. */
typedef enum {
  DR_EMIT_DEFAULT = 0,
  DR_EMIT_STORE_TRANSLATIONS = 0x01,
  DR_EMIT_PERSISTABLE = 0x02,
  DR_EMIT_MUST_END_TRACE = 0x04,
  DR_EMIT_GO_NATIVE = 0x08,
} dr_emit_flags_t;

typedef struct _instr_t instr_t;
typedef struct _instrlist_t instrlist_t;

#endif
