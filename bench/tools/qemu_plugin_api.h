/* The part of QEMU's plugin interface that the bench's plugins use,
 * declared here so that they build without QEMU's development files. */
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef uint64_t qemu_plugin_id_t;
struct qemu_plugin_tb;
struct qemu_plugin_insn;
typedef struct {
  const char* target_name;
  int version_min, version_cur;
  int system_emulation;
} qemu_info_head;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };
enum qemu_plugin_cb_flags { QEMU_PLUGIN_CB_NO_REGS };

#define EXPORT __attribute__((visibility("default")))

extern void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t,
                                                  void (*)(qemu_plugin_id_t,
                                                           struct qemu_plugin_tb*));
extern size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb*);
extern uint64_t qemu_plugin_tb_vaddr(const struct qemu_plugin_tb*);
extern struct qemu_plugin_insn* qemu_plugin_tb_get_insn(const struct qemu_plugin_tb*, size_t);
extern void* qemu_plugin_insn_haddr(const struct qemu_plugin_insn*);
extern const void* qemu_plugin_insn_data(const struct qemu_plugin_insn*);
extern size_t qemu_plugin_insn_size(const struct qemu_plugin_insn*);
extern void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb*, enum qemu_plugin_op,
                                                     void*, uint64_t);
extern void qemu_plugin_register_vcpu_insn_exec_inline(struct qemu_plugin_insn*,
                                                       enum qemu_plugin_op, void*, uint64_t);
extern void qemu_plugin_register_vcpu_tb_exec_cb(struct qemu_plugin_tb*,
                                                 void (*)(unsigned int, void*),
                                                 enum qemu_plugin_cb_flags, void*);
extern void qemu_plugin_register_atexit_cb(qemu_plugin_id_t, void (*)(qemu_plugin_id_t, void*),
                                           void*);
extern void qemu_plugin_outs(const char*);
