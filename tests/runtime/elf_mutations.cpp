// Damaged ELF headers against the loader's planner, built for the build
// machine with the address and undefined-behaviour sanitizers: every
// mutation of a real program's ELF and program headers must be either
// refused with a reason or planned within the file's bytes, never read out
// of bounds.
// usage: elf_mutations PROGRAM [COUNT]
//        elf_mutations --write DIR PROGRAM COUNT   (writes the mutants as
//        DIR/mutant-N, for running them under zorvo)
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "elf_plan.h"

namespace {

constexpr uint64_t kPage = 4096;

uint64_t get(const std::vector<unsigned char>& f, size_t at, int bytes) {
  uint64_t v = 0;
  for (int i = bytes - 1; i >= 0; --i) v = v << 8 | f[at + i];
  return v;
}

void put(std::vector<unsigned char>& f, size_t at, int bytes, uint64_t v) {
  for (int i = 0; i < bytes && at + i < f.size(); ++i)
    f[at + i] = static_cast<unsigned char>(v >> (8 * i));
}

// Values at the edges of what the planner checks.
uint64_t edge_value(std::mt19937_64& rng, uint64_t size) {
  const uint64_t edges[] = {0,
                            1,
                            7,
                            8,
                            55,
                            56,
                            57,
                            64,
                            kPage - 1,
                            kPage,
                            size - 1,
                            size,
                            size + 1,
                            size / 2,
                            ~uint64_t(0),
                            ~uint64_t(0) - 7,
                            uint64_t(1) << 47,
                            uint64_t(1) << 48,
                            uint64_t(1) << 63,
                            0xffff,
                            0x10000};
  if (rng() % 4 == 0) return rng();
  return edges[rng() % (sizeof edges / sizeof edges[0])];
}

// One mutation of a copy of the original, whose program headers are at
// phoff; returns what it did.
std::string mutate(std::vector<unsigned char>& f, std::mt19937_64& rng, uint64_t phoff,
                   uint64_t phnum) {
  char what[128];
  switch (rng() % 5) {
  case 0: { // a byte of the ELF header
    const size_t at = rng() % 64;
    f[at] = static_cast<unsigned char>(rng());
    std::snprintf(what, sizeof what, "ELF header byte %zu", at);
    break;
  }
  case 1: { // a field of the ELF header
    static const int fields[][2] = {{16, 2}, {18, 2}, {24, 8}, {32, 8}, {54, 2}, {56, 2}};
    const auto& fld = fields[rng() % 6];
    put(f, fld[0], fld[1], edge_value(rng, f.size()));
    std::snprintf(what, sizeof what, "ELF header field at %d", fld[0]);
    break;
  }
  case 2:
  case 3: { // a field of one program header
    static const int fields[][2] = {{0, 4}, {4, 4}, {8, 8}, {16, 8}, {32, 8}, {40, 8}, {48, 8}};
    const size_t ph = phoff + (rng() % phnum) * 56;
    const auto& fld = fields[rng() % 7];
    put(f, ph + fld[0], fld[1], edge_value(rng, f.size()));
    std::snprintf(what, sizeof what, "program header at %zu, field %d", ph, fld[0]);
    break;
  }
  default: { // the file cut short
    const size_t keep = rng() % 2 ? rng() % (phoff + phnum * 56 + 1) : rng() % f.size();
    f.resize(keep);
    std::snprintf(what, sizeof what, "cut to %zu bytes", keep);
    break;
  }
  }
  return what;
}

// What the loader relies on in a plan it is given.
const char* plan_flaw(const loader::elf_plan& p, const std::vector<unsigned char>& f) {
  if (p.segments < 1 || p.segments > loader::kMaxLoadSegments) return "segment count";
  for (int s = 0; s < p.segments; ++s) {
    const loader::load_segment& seg = p.segment[s];
    if (seg.offset > f.size() || seg.filesz > f.size() - seg.offset)
      return "segment outside the file";
    if (seg.filesz > seg.memsz) return "file part larger than memory part";
    if (seg.vaddr % kPage != seg.offset % kPage) return "misaligned segment";
    if (s > 0 && seg.vaddr < p.segment[s - 1].vaddr + p.segment[s - 1].memsz) return "overlap";
  }
  if (p.low > p.segment[0].vaddr || p.high < p.segment[p.segments - 1].vaddr) return "span";
  if (p.interp_size != 0) {
    if (p.interp_offset > f.size() || p.interp_size > f.size() - p.interp_offset)
      return "interpreter outside";
    if (f[p.interp_offset + p.interp_size - 1] != 0) return "interpreter name not terminated";
  }
  return nullptr;
}

// The planner reads exactly the file's bytes, from a buffer of that size.
const char* plan(const std::vector<unsigned char>& f, loader::elf_plan* p) {
  std::vector<unsigned char> exact(f);
  exact.shrink_to_fit();
  return loader::plan_elf(exact.empty() ? nullptr : exact.data(), exact.size(), kPage, p);
}

} // namespace

int main(int argc, char** argv) {
  const bool write = argc == 5 && std::strcmp(argv[1], "--write") == 0;
  const char* dir = write ? argv[2] : nullptr;
  if (write) argv += 2, argc -= 2;
  if (argc < 2) {
    std::fprintf(stderr, "usage: elf_mutations PROGRAM [COUNT]\n");
    return 2;
  }
  std::ifstream in(argv[1], std::ios::binary);
  const std::vector<unsigned char> original{std::istreambuf_iterator<char>(in), {}};
  const int count = argc > 2 ? std::atoi(argv[2]) : 1000;
  loader::elf_plan p;
  if (const char* why = plan(original, &p)) {
    std::fprintf(stderr, "FAIL: the unmutated program is refused: %s\n", why);
    return 1;
  }
  if (p.interp_size == 0 || !p.position_independent) {
    std::fprintf(stderr, "FAIL: expected a dynamically linked PIE program\n");
    return 1;
  }
  std::mt19937_64 rng(22);
  int refused = 0, accepted = 0, failures = 0;
  for (int i = 0; i < count; ++i) {
    std::vector<unsigned char> f(original);
    const int rounds = 1 + static_cast<int>(rng() % 3);
    std::string what;
    for (int r = 0; r < rounds && f.size() >= 64; ++r)
      what += mutate(f, rng, get(original, 32, 8), get(original, 56, 2)) + "; ";
    if (write) {
      const std::string name = std::string(dir) + "/mutant-" + std::to_string(i);
      std::ofstream(name, std::ios::binary)
          .write(reinterpret_cast<const char*>(f.data()), static_cast<std::streamsize>(f.size()));
      std::printf("%s\t%s\n", name.c_str(), what.c_str());
      continue;
    }
    if (const char* why = plan(f, &p)) {
      if (why[0] == 0) {
        std::fprintf(stderr, "FAIL: %s: empty reason\n", what.c_str());
        ++failures;
      }
      ++refused;
    } else if (const char* flaw = plan_flaw(p, f)) {
      std::fprintf(stderr, "FAIL: %s: accepted with a flaw: %s\n", what.c_str(), flaw);
      ++failures;
    } else {
      ++accepted;
    }
  }
  if (write) return 0;
  std::printf("%d mutations: %d refused, %d accepted\n", count, refused, accepted);
  // Both outcomes must occur, or the mutations test nothing.
  if (refused == 0 || accepted == 0) ++failures;
  return failures != 0;
}
