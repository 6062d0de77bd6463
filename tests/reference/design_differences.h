// Where this system deliberately differs from the architecture, and how the
// reference check takes each difference into account. This is the one list:
// nothing else is excluded from the comparison, and a row that merely
// differs is a failure.
#pragma once

#include <cstdint>

#include "row_profile.h"

enum class design_effect : uint8_t {
  skip_case,     // the case is not compared and counts as skipped
  relax_compare, // the comparison ignores exactly the difference told
  draw_rule,     // such cases are never drawn
};

struct design_difference {
  const char* tag;
  design_effect effect;
  const char* why;
};

const design_difference* design_differences(int* count);

// "region-markers"
bool is_region_marker(uint32_t word);

// "first-fault-by-page" and "unloaded-elements"
bool decides_by_page(const row_profile& p);

// Where the processor that serves as the reference is itself wrong. Kept
// apart from the list above: these are not differences of this system, and
// what they keep out of the draw is tested by unit tests instead.
const design_difference* reference_defects(int* count);

// "reference-inactive-first"
bool needs_first_element_active(const row_profile& p);

// "reference-long-unsigned-narrow"
bool needs_unsaturated_narrowing(const row_profile& p);
