/* QEMU TCG plugin: guest instructions by where they lie, for a profile by
 * function.  Every translated block gets a counter; at exit each block's
 * executions times its length are summed by the host mapping that holds the
 * block's code (qemu-user maps the guest's files into its own address space,
 * so /proc/self/maps of qemu names them) and written as lines
 *     PATH FILE_OFFSET INSTRUCTIONS
 * where anonymous memory (generated code: code cache, stubs) shows as
 * "[anon]" with its guest address in place of the offset.
 * bench/tools/profile.py turns that into a table by symbol.
 * Build: gcc -shared -fPIC -O2 -o insnprofile.so insnprofile.c
 * Use:   qemu-aarch64 -plugin ./insnprofile.so,out=FILE ./app
 * Counters are shared without atomics: with several threads a few
 * increments may be lost.                                                 */
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

typedef uint64_t qemu_plugin_id_t;
struct qemu_plugin_tb;
struct qemu_plugin_insn;
enum qemu_plugin_op { QEMU_PLUGIN_INLINE_ADD_U64 };

#define EXPORT __attribute__((visibility("default")))
EXPORT int qemu_plugin_version = 1;

extern void qemu_plugin_register_vcpu_tb_trans_cb(qemu_plugin_id_t,
                                                  void (*)(qemu_plugin_id_t,
                                                           struct qemu_plugin_tb*));
extern size_t qemu_plugin_tb_n_insns(const struct qemu_plugin_tb*);
extern uint64_t qemu_plugin_tb_vaddr(const struct qemu_plugin_tb*);
extern struct qemu_plugin_insn* qemu_plugin_tb_get_insn(const struct qemu_plugin_tb*, size_t);
extern void* qemu_plugin_insn_haddr(const struct qemu_plugin_insn*);
extern void qemu_plugin_register_vcpu_tb_exec_inline(struct qemu_plugin_tb*, enum qemu_plugin_op,
                                                     void*, uint64_t);
extern void qemu_plugin_register_atexit_cb(qemu_plugin_id_t, void (*)(qemu_plugin_id_t, void*),
                                           void*);

struct block_count {
  uint64_t executions, length, vaddr;
  uintptr_t haddr;
  struct block_count* next;
};

static struct block_count* blocks;
static const char* out_path = "insnprofile.out";

static void on_tb(qemu_plugin_id_t id, struct qemu_plugin_tb* tb) {
  (void)id;
  struct block_count* b = calloc(1, sizeof *b);
  if (!b) return;
  b->length = qemu_plugin_tb_n_insns(tb);
  b->vaddr = qemu_plugin_tb_vaddr(tb);
  b->haddr = (uintptr_t)qemu_plugin_insn_haddr(qemu_plugin_tb_get_insn(tb, 0));
  b->next = blocks;
  blocks = b;
  qemu_plugin_register_vcpu_tb_exec_inline(tb, QEMU_PLUGIN_INLINE_ADD_U64, &b->executions, 1);
}

struct mapping {
  uintptr_t start, end, offset;
  char path[256];
};

static int read_maps(struct mapping** out) {
  FILE* f = fopen("/proc/self/maps", "r");
  if (!f) return 0;
  int n = 0, cap = 0;
  char line[512];
  while (fgets(line, sizeof line, f)) {
    struct mapping m = {0};
    char perms[8];
    if (sscanf(line, "%" SCNxPTR "-%" SCNxPTR " %7s %" SCNxPTR " %*s %*s %255s", &m.start, &m.end,
               perms, &m.offset, m.path) < 4)
      continue;
    if (n == cap) {
      cap = cap ? 2 * cap : 256;
      *out = realloc(*out, cap * sizeof **out);
    }
    (*out)[n++] = m;
  }
  fclose(f);
  return n;
}

static void on_exit_cb(qemu_plugin_id_t id, void* p) {
  (void)id;
  (void)p;
  struct mapping* maps = NULL;
  const int n = read_maps(&maps);
  FILE* out = fopen(out_path, "w");
  if (!out) return;
  for (struct block_count* b = blocks; b; b = b->next) {
    if (!b->executions) continue;
    const struct mapping* m = NULL;
    for (int i = 0; i < n && !m; i++)
      if (b->haddr >= maps[i].start && b->haddr < maps[i].end) m = &maps[i];
    if (m && m->path[0] == '/')
      fprintf(out, "%s %" PRIxPTR " %" PRIu64 "\n", m->path, b->haddr - m->start + m->offset,
              b->executions * b->length);
    else
      fprintf(out, "[anon] %" PRIx64 " %" PRIu64 "\n", b->vaddr, b->executions * b->length);
  }
  fclose(out);
  free(maps);
}

EXPORT int qemu_plugin_install(qemu_plugin_id_t id, const void* info, int argc, char** argv) {
  (void)info;
  for (int i = 0; i < argc; i++)
    if (!strncmp(argv[i], "out=", 4)) out_path = argv[i] + 4;
  qemu_plugin_register_vcpu_tb_trans_cb(id, on_tb);
  qemu_plugin_register_atexit_cb(id, on_exit_cb, NULL);
  return 0;
}
