/* Register management extension: only its shutdown is offered. */
#ifndef _DRREG_H_
#define _DRREG_H_ 1

#include "dr_api.h"

typedef enum {
  DRREG_SUCCESS,
  DRREG_ERROR,
  DRREG_ERROR_INVALID_PARAMETER,
  DRREG_ERROR_FEATURE_NOT_AVAILABLE,
} drreg_status_t;

#ifdef __cplusplus
extern "C" {
#endif

drreg_status_t drreg_exit(void);

#ifdef __cplusplus
}
#endif

#endif
