#include "cache_model.h"

namespace {

bool is_power_of_two(uint64_t v) { return v != 0 && (v & (v - 1)) == 0; }

unsigned log2_of(uint64_t v) {
  unsigned shift = 0;
  while ((uint64_t{1} << shift) < v) ++shift;
  return shift;
}

} // namespace

std::string cache_config_problem(const cache_config& c) {
  if (!is_power_of_two(c.line_bytes) || c.line_bytes < 4 || c.line_bytes > 4096)
    return "the line size must be a power of two from 4 to 4096 bytes";
  if (c.ways == 0 || c.ways > 64) return "the ways must be from 1 to 64";
  const uint64_t set_bytes = uint64_t{c.ways} * c.line_bytes;
  if (c.size_bytes == 0 || c.size_bytes % set_bytes != 0)
    return "the size must be a whole number of sets (ways x line size = " +
           std::to_string(set_bytes) + " bytes)";
  if (c.size_bytes > (uint64_t{1} << 30)) return "the size must be at most 1 GiB";
  return "";
}

lru_cache::lru_cache(const cache_config& c)
    : config(c), sets(c.size_bytes / (uint64_t{c.ways} * c.line_bytes)),
      line_shift(log2_of(c.line_bytes)), slots(sets * c.ways, 0) {}

bool lru_cache::access(uint64_t addr) {
  const uint64_t line = addr >> line_shift;
  uint64_t* set = &slots[(line % sets) * config.ways];
  const uint64_t tag = line + 1;
  uint32_t at = 0;
  while (at < config.ways && set[at] != tag) ++at;
  const bool hit = at < config.ways;
  if (!hit) at = config.ways - 1; // the least recently used leaves
  for (; at > 0; --at) set[at] = set[at - 1];
  set[0] = tag;
  return hit;
}
