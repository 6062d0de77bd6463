// Shows the emulator at work on a few add and subtract instructions: the
// registers before, the instruction, and the registers after.
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "decode/sve_utils.h"

namespace {

void show_elements(const char* name, const uint8_t* reg, unsigned bytes, unsigned count) {
  std::printf("    %-4s", name);
  for (unsigned i = 0; i < count; ++i) {
    uint64_t v = 0;
    std::memcpy(&v, reg + i * bytes, bytes);
    std::printf(" %*" PRIu64, bytes == 1 ? 4 : 6, v);
  }
  std::printf(bytes * count < 48 ? " ...\n" : "\n");
}

void show_predicate(const char* name, const uint8_t* pred, unsigned bytes, unsigned count) {
  std::printf("    %-4s", name);
  for (unsigned i = 0; i < count; ++i)
    std::printf(" %*s", bytes == 1 ? 4 : 6, pred[i * bytes] & 1 ? "on" : "off");
  std::printf(bytes * count < 48 ? " ...\n" : "\n");
}

struct step {
  uint32_t word;
  const char* text;
  const char* explain;
  unsigned element_bytes;
  int regs[3]; // the Z registers the instruction reads or writes, -1 for none
  bool uses_p0;
};

} // namespace

int main() {
  static cpu_state s;
  for (unsigned i = 0; i < 12; ++i) {
    const uint32_t a = 10 * (i + 1), b = i + 1;
    std::memcpy(s.z[1] + 4 * i, &a, 4);
    std::memcpy(s.z[2] + 4 * i, &b, 4);
    s.p[0][4 * i] = i % 2 == 0; // every other word element active
  }
  for (unsigned i = 0; i < 48; ++i) s.z[3][i] = static_cast<uint8_t>(250 + i % 8);

  const step steps[] = {
      {0x04a20020, "add z0.s, z1.s, z2.s", "every element: z0 = z1 + z2", 4, {0, 1, 2}, false},
      {0x04810041,
       "sub z1.s, p0/m, z1.s, z2.s",
       "active elements only: z1 = z1 - z2; the others keep z1",
       4,
       {1, 2, -1},
       true},
      {0x2520c143,
       "add z3.b, z3.b, #10",
       "every byte: z3 = z3 + 10, wrapping at 256",
       1,
       {3, -1, -1},
       false},
  };

  std::printf("Zorvo emulates SVE instructions on a machine without SVE.\n");
  std::printf("Each instruction word is looked up in the decode tables and run on a\n");
  std::printf("48-byte (384-bit) register file. The first elements of each register:\n");
  for (const step& st : steps) {
    const decode_row* row = find_decode_row(st.word);
    std::printf("\n0x%08x  %s\n  (%s; decoder %s, handler %s)\n", st.word, st.text, st.explain,
                row ? row->name : "none", row ? row->handler : "none");
    auto show = [&](const char* when) {
      std::printf("  %s:\n", when);
      for (int r : st.regs) {
        if (r < 0) continue;
        char name[16];
        std::snprintf(name, sizeof name, "z%d", r);
        show_elements(name, s.z[r], st.element_bytes, 12);
      }
      if (st.uses_p0) show_predicate("p0", s.p[0], st.element_bytes, 12);
    };
    show("before");
    if (!row || row->decoder(&s, st.word) != AARCH64_DECODE_OK) {
      std::printf("  failed to emulate\n");
      return 1;
    }
    show("after");
  }
  return 0;
}
