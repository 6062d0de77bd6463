/* Multi-client manager extension: per-thread storage and events. */
#ifndef _DRMGR_H_
#define _DRMGR_H_ 1

#include "dr_api.h"

#ifdef __cplusplus
extern "C" {
#endif

void* drmgr_get_tls_field(void* drcontext, int idx);

#ifdef __cplusplus
}
#endif

#endif
