/* The runtime's client interface: the subset Zorvo's client uses, under the
 * names, types and signatures of interface version 700, plus
 * dr_insert_call_zorvo. */
#ifndef _DR_API_H_
#define _DR_API_H_ 1

#include "dr_defines.h"
#include "dr_events.h"
#include "dr_ir_instr.h"
#include "dr_ir_macros_aarch64.h"
#include "dr_ir_opcodes_aarch64.h"
#include "dr_ir_opnd.h"
#include "dr_ir_utils.h"
#include "dr_tools.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The client's entry: the runtime calls it once, after the client library's
 * static constructors, with argv[0] the client's path and its options after. */
DR_EXPORT void dr_client_main(client_id_t id, int argc, const char* argv[]);

/* The interface version the client was built against: major * 100 + minor. */
DR_EXPORT LINK_ONCE int _USES_DR_VERSION_ = 700;

#ifdef __cplusplus
}
#endif

#endif
