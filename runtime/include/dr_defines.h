/* Basic types of the runtime interface. */
#ifndef _DR_DEFINES_H_
#define _DR_DEFINES_H_ 1

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

typedef uint8_t byte;
typedef unsigned int uint;
typedef uintptr_t ptr_uint_t;
typedef intptr_t ptr_int_t;
typedef ptr_uint_t reg_t;
typedef uint64_t uint64;
typedef int64_t int64;
typedef uint32_t uint32;
typedef int32_t int32;
typedef uint16_t uint16;
typedef unsigned char uchar;
typedef ptr_uint_t app_pc_value_t;
typedef byte* app_pc;
typedef uint client_id_t;
typedef void* file_t;

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

#endif
