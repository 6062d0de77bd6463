/* Process-wide events. */
#ifndef _DR_EVENTS_H_
#define _DR_EVENTS_H_ 1

#include "dr_defines.h"

#ifdef __cplusplus
extern "C" {
#endif

/* func runs once when the process exits: after main returns or exit(). */
void dr_register_exit_event(void (*func)(void));
bool dr_unregister_exit_event(void (*func)(void));

#ifdef __cplusplus
}
#endif

#endif
