/* QEMU TCG plugin: guest instructions by where they lie, for a profile by
 * function.  Every translated block gets a counter; at exit each block's
 * executions times its length are summed by the host mapping that holds the
 * block's code (qemu-user maps the guest's files into its own address space,
 * so /proc/self/maps of qemu names them) and written as lines
 *     PATH FILE_OFFSET INSTRUCTIONS
 * where anonymous memory (generated code: code cache, stubs) shows as
 * "[anon]" with its guest address in place of the offset.
 * A block that does no work of its own (one of the C library or the dynamic
 * loader, or a PLT stub: a block ending in `br x17`) is counted for the
 * caller too: the last other block its thread ran, written after it as
 *     PATH FILE_OFFSET INSTRUCTIONS CALLER_PATH CALLER_OFFSET
 * so that memcpy called by the code that builds blocks and memcpy called by
 * a handler are told apart ("[none] 0" when a thread began in such a block).
 * bench/tools/insnprofile.py turns that into a table by symbol.
 * Build: gcc -shared -fPIC -O2 -o insnprofile.so insnprofile.c
 * Use:   qemu-aarch64 -plugin ./insnprofile.so,out=FILE ./app
 * Counters are shared without atomics: with several threads a few
 * increments may be lost.                                                 */
#include <inttypes.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "qemu_plugin_api.h"

EXPORT int qemu_plugin_version = 1;

struct block_count;
struct caller_count {
  const struct block_count* caller;
  uint64_t executions;
  struct caller_count* next;
};

struct block_count {
  uint64_t executions, length, vaddr;
  uintptr_t haddr;
  struct caller_count* callers; /* only for a block counted for its caller */
  int for_caller;
  struct block_count* next;
};

static struct block_count* blocks;
static const char* out_path = "insnprofile.out";

struct mapping {
  uintptr_t start, end, offset;
  char path[256];
};

static int read_maps(struct mapping** out);

/* The last block of the thread's own that ran, by vCPU (one per thread). */
#define MAX_VCPUS 4096
static const struct block_count* last_own[MAX_VCPUS];
static pthread_mutex_t callers_lock = PTHREAD_MUTEX_INITIALIZER;
static struct mapping* known_maps;
static int known_map_count;

static const struct mapping* mapping_of(uintptr_t haddr) {
  for (int pass = 0; pass < 2; pass++) {
    for (int i = 0; i < known_map_count; i++)
      if (haddr >= known_maps[i].start && haddr < known_maps[i].end) return &known_maps[i];
    known_map_count = read_maps(&known_maps); /* a library mapped since */
  }
  return NULL;
}

static int shared_library(const char* path) {
  const char* name = strrchr(path, '/');
  name = name ? name + 1 : path;
  return !strncmp(name, "libc.so", 7) || !strncmp(name, "ld-linux", 8);
}

static int ends_in_br_x17(const struct qemu_plugin_tb* tb, size_t n) {
  const struct qemu_plugin_insn* last = qemu_plugin_tb_get_insn(tb, n - 1);
  uint32_t word = 0;
  if (qemu_plugin_insn_size(last) != 4) return 0;
  memcpy(&word, qemu_plugin_insn_data(last), 4);
  return word == 0xd61f0220u;
}

static void on_exec(unsigned int vcpu, void* data) {
  struct block_count* b = data;
  b->executions++;
  const struct block_count* caller = vcpu < MAX_VCPUS ? last_own[vcpu] : NULL;
  if (!b->for_caller) {
    if (vcpu < MAX_VCPUS) last_own[vcpu] = b;
    return;
  }
  pthread_mutex_lock(&callers_lock);
  struct caller_count** link = &b->callers;
  while (*link && (*link)->caller != caller) link = &(*link)->next;
  struct caller_count* c = *link;
  if (c) {
    *link = c->next; /* to the front: callers come in runs */
  } else {
    c = calloc(1, sizeof *c);
    if (c) c->caller = caller;
  }
  if (c) {
    c->executions++;
    c->next = b->callers;
    b->callers = c;
  }
  pthread_mutex_unlock(&callers_lock);
}

static void on_tb(qemu_plugin_id_t id, struct qemu_plugin_tb* tb) {
  (void)id;
  struct block_count* b = calloc(1, sizeof *b);
  if (!b) return;
  b->length = qemu_plugin_tb_n_insns(tb);
  b->vaddr = qemu_plugin_tb_vaddr(tb);
  b->haddr = (uintptr_t)qemu_plugin_insn_haddr(qemu_plugin_tb_get_insn(tb, 0));
  pthread_mutex_lock(&callers_lock);
  const struct mapping* m = mapping_of(b->haddr);
  b->for_caller = (m && shared_library(m->path)) || (b->length && ends_in_br_x17(tb, b->length));
  b->next = blocks;
  blocks = b;
  pthread_mutex_unlock(&callers_lock);
  qemu_plugin_register_vcpu_tb_exec_cb(tb, on_exec, QEMU_PLUGIN_CB_NO_REGS, b);
}

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

static void print_place(FILE* out, const struct mapping* maps, int n, const struct block_count* b) {
  const struct mapping* m = NULL;
  for (int i = 0; i < n && !m; i++)
    if (b->haddr >= maps[i].start && b->haddr < maps[i].end) m = &maps[i];
  if (m && m->path[0] == '/')
    fprintf(out, "%s %" PRIxPTR, m->path, b->haddr - m->start + m->offset);
  else
    fprintf(out, "[anon] %" PRIx64, b->vaddr);
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
    if (!b->for_caller) {
      print_place(out, maps, n, b);
      fprintf(out, " %" PRIu64 "\n", b->executions * b->length);
    }
    for (const struct caller_count* c = b->callers; c; c = c->next) {
      print_place(out, maps, n, b);
      fprintf(out, " %" PRIu64 " ", c->executions * b->length);
      if (c->caller)
        print_place(out, maps, n, c->caller);
      else
        fprintf(out, "[none] 0");
      fprintf(out, "\n");
    }
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
