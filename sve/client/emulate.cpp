#include "emulate.h"

#include <cstdio>
#include <cstring>

#include "dr_api.h"
#include "drmgr.h"
#include "memory/sve_fault.h"

int tls_idx;

cpu_state* thread_record_for_faults() {
  void* drcontext = dr_get_current_drcontext();
  return drcontext ? static_cast<cpu_state*>(drmgr_get_tls_field(drcontext, tls_idx)) : nullptr;
}

extern "C" void report_failure_to_emulate(const uint8_t* pc) {
  // The word the application has at pc, also where the runtime has patched
  // that word in memory.
  uint32_t in_memory;
  std::memcpy(&in_memory, dr_app_pc_for_decoding(const_cast<uint8_t*>(pc)), sizeof in_memory);
  std::fprintf(stderr, "Error: failed to emulate SVE instruction 0x%08x at PC %p\n", in_memory,
               static_cast<const void*>(pc));
}

void emulate_instruction(uint32_t word, uint8_t* pc, sve_decoder decoder) {
  void* drcontext = dr_get_current_drcontext();
  auto* state = static_cast<cpu_state*>(drmgr_get_tls_field(drcontext, tls_idx));
  state->pc = reinterpret_cast<uint64_t>(pc);
  // X26 and X27 are the generated code's scratch registers and X28 belongs to
  // the runtime, so their application values wait in the spill slots.
  state->regs[26] = dr_read_saved_reg(drcontext, SPILL_SLOT_1);
  state->regs[27] = dr_read_saved_reg(drcontext, SPILL_SLOT_2);
  state->regs[28] = dr_read_saved_reg(drcontext, SPILL_SLOT_3);

  // A fault the application must see is reported at this instruction with
  // the registers of the record (sve_fault.h).
  state->emulating = 1;
  const auto rc = decoder(state, word);
  state->emulating = 0;
  if (rc != AARCH64_DECODE_OK) report_failure_to_emulate(pc);

  // Written back even after a failure: a decoder may have changed any of them.
  dr_write_saved_reg(drcontext, SPILL_SLOT_1, state->regs[26]);
  dr_write_saved_reg(drcontext, SPILL_SLOT_2, state->regs[27]);
  dr_write_saved_reg(drcontext, SPILL_SLOT_3, state->regs[28]);
}
