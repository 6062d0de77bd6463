// Holds the emulator's result against the reference's and says, element by
// element, what differs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "machine.h"
#include "state/cpu_state.h"

struct compare_rules {
  unsigned elem_bytes; // how vector registers are shown: 1, 2, 4 or 8
  bool by_page;        // a first-fault or non-fault load (see design_differences.h)
  unsigned dest_z;     // its destination
  uint32_t operand_z;  // registers the word names, shown beside a differing element
  uint16_t operand_p;
};

// The test area before the run, after the reference's run and after the
// emulator's; `bytes` is 0 for forms that do not touch memory.
struct memory_images {
  const uint8_t* before;
  const uint8_t* expected;
  const uint8_t* actual;
  size_t bytes;
  uint64_t address;
};

struct comparison {
  bool equal = true;
  bool relaxed = false;           // a design difference hid a real difference
  std::vector<std::string> lines; // one per difference, readable
};

// `raw` is the emulator's own record, whose predicate bytes must each be 0 or 1.
comparison compare_results(const machine_state& before, const machine_state& expected,
                           const machine_state& actual, const cpu_state& raw,
                           const memory_images& memory, const compare_rules& rules);
