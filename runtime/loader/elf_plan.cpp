#include "elf_plan.h"

namespace loader {
namespace {

constexpr uint16_t kMachineAArch64 = 183;
constexpr uint16_t kTypeExec = 2, kTypeDyn = 3;
constexpr uint32_t kLoad = 1, kInterp = 3, kPhdr = 6;
constexpr uint64_t kHeaderSize = 64, kPhentSize = 56;
// The largest user address of a 48-bit virtual address space.
constexpr uint64_t kAddressLimit = uint64_t(1) << 48;
constexpr uint64_t kMaxInterpPath = 4096;

uint64_t read_le(const unsigned char* p, int bytes) {
  uint64_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = v << 8 | p[i];
  return v;
}

// a + b <= limit, without overflow.
bool fits(uint64_t a, uint64_t b, uint64_t limit) { return a <= limit && b <= limit - a; }

const char* plan_segments(const unsigned char* file, uint64_t size, uint64_t phoff,
                          uint64_t page_size, elf_plan* plan) {
  bool have_phdr = false;
  for (uint16_t i = 0; i < plan->phnum; ++i) {
    const unsigned char* ph = file + phoff + i * kPhentSize;
    const uint32_t type = static_cast<uint32_t>(read_le(ph, 4));
    const uint64_t offset = read_le(ph + 8, 8), vaddr = read_le(ph + 16, 8);
    const uint64_t filesz = read_le(ph + 32, 8), memsz = read_le(ph + 40, 8);
    if (type == kInterp) {
      if (plan->interp_size != 0) return "more than one interpreter";
      if (!fits(offset, filesz, size)) return "interpreter name outside the file";
      if (filesz < 2 || filesz > kMaxInterpPath || file[offset + filesz - 1] != 0)
        return "malformed interpreter name";
      for (uint64_t k = 0; k + 1 < filesz; ++k)
        if (file[offset + k] == 0) return "malformed interpreter name";
      plan->interp_offset = offset;
      plan->interp_size = filesz;
    } else if (type == kPhdr) {
      have_phdr = true;
      plan->phdr_vaddr = vaddr;
    } else if (type == kLoad) {
      if (plan->segments == kMaxLoadSegments) return "too many load segments";
      if (filesz > memsz) return "load segment larger in the file than in memory";
      if (!fits(offset, filesz, size)) return "load segment beyond the end of the file";
      if (!fits(vaddr, memsz, kAddressLimit - page_size))
        return "load segment address out of range";
      if (vaddr % page_size != offset % page_size) return "misaligned load segment";
      if (plan->segments > 0) {
        const load_segment& last = plan->segment[plan->segments - 1];
        if (vaddr < last.vaddr + last.memsz) return "load segments overlap or are out of order";
      }
      const uint32_t flags = static_cast<uint32_t>(read_le(ph + 4, 4)) & 7;
      plan->segment[plan->segments++] = {vaddr, memsz, offset, filesz, flags};
    }
  }
  if (plan->segments == 0) return "no load segment";
  const load_segment& first = plan->segment[0];
  const load_segment& last = plan->segment[plan->segments - 1];
  plan->low = first.vaddr & ~(page_size - 1);
  plan->high = (last.vaddr + last.memsz + page_size - 1) & ~(page_size - 1);
  if (!have_phdr) {
    // The program headers are loaded where the segment that holds them goes.
    plan->phdr_vaddr = 0;
    for (int s = 0; s < plan->segments; ++s) {
      const load_segment& seg = plan->segment[s];
      if (phoff >= seg.offset && phoff - seg.offset < seg.filesz)
        plan->phdr_vaddr = seg.vaddr + (phoff - seg.offset);
    }
    // The dynamic loader, or a static program's C library, reads them there.
    if (plan->phdr_vaddr == 0) return "program headers not loaded";
  }
  bool entry_in_code = false;
  for (int s = 0; s < plan->segments; ++s) {
    const load_segment& seg = plan->segment[s];
    if ((seg.flags & 1) && plan->entry >= seg.vaddr && plan->entry - seg.vaddr < seg.memsz)
      entry_in_code = true;
  }
  if (!entry_in_code) return "entry point outside the program's code";
  return nullptr;
}

} // namespace

const char* plan_elf(const unsigned char* file, uint64_t size, uint64_t page_size, elf_plan* plan) {
  *plan = elf_plan{};
  if (size < 4 || file[0] != 0x7f || file[1] != 'E' || file[2] != 'L' || file[3] != 'F')
    return "not an ELF file";
  if (size < kHeaderSize) return "truncated ELF header";
  if (file[4] != 2 || file[5] != 1 || file[6] != 1) return "not a 64-bit little-endian ELF file";
  if (read_le(file + 18, 2) != kMachineAArch64) return "not an AArch64 program";
  const uint64_t type = read_le(file + 16, 2);
  if (type != kTypeExec && type != kTypeDyn) return "not an executable ELF file";
  plan->position_independent = type == kTypeDyn;
  plan->entry = read_le(file + 24, 8);
  const uint64_t phoff = read_le(file + 32, 8);
  if (read_le(file + 54, 2) != kPhentSize) return "unexpected program header size";
  plan->phnum = static_cast<uint16_t>(read_le(file + 56, 2));
  if (plan->phnum == 0 || plan->phnum == 0xffff) return "no program headers";
  if (phoff % 8 != 0 || !fits(phoff, plan->phnum * kPhentSize, size))
    return "program headers outside the file";
  return plan_segments(file, size, phoff, page_size, plan);
}

} // namespace loader
