// A context of the given vector length (in 64-bit units), everything else
// clear: what the SVE2 generic tests run their functions in.
#pragma once

#include <cstdint>

#include "generic/vector.h"

inline CpuContext context(uint32_t vl) {
  CpuContext ctx{};
  ctx.vl = vl;
  return ctx;
}
