/* The runtime's client interface: the subset Zorvo's client uses, under the
 * names and signatures of interface version 700. */
#ifndef _DR_API_H_
#define _DR_API_H_ 1

#include "dr_defines.h"

#ifdef __cplusplus
extern "C" {
#endif

void* dr_get_current_drcontext(void);
reg_t dr_read_saved_reg(void* drcontext, dr_spill_slot_t slot);
void dr_write_saved_reg(void* drcontext, dr_spill_slot_t slot, reg_t value);

#ifdef __cplusplus
}
#endif

#endif
