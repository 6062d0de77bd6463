// A set-associative cache with least-recently-used replacement, for asking
// how well an instruction's accesses would stay in a cache of a given shape.
// One cache for the whole trace: threads share it, and loads and stores both
// allocate a line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct cache_config {
  uint64_t size_bytes = 64 * 1024;
  uint32_t ways = 4;
  uint32_t line_bytes = 64;
};

// What is wrong with the shape, or "" when it can be modelled.
std::string cache_config_problem(const cache_config& config);

struct lru_cache {
  explicit lru_cache(const cache_config& config);

  // Touches the line that holds `addr`; true when it was already present.
  bool access(uint64_t addr);

  cache_config config;
  uint64_t sets;
  unsigned line_shift;
  // ways entries per set, most recently used first; a line number + 1, 0 empty.
  std::vector<uint64_t> slots;
};
