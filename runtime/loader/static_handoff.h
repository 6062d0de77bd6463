// What the loader and the runtime tell the static host about a statically
// linked program, in auxiliary vector entries of types no kernel uses.
#pragma once

#include <cstdint>

namespace loader {
constexpr uint64_t kStaticAppPhdr = 0x7a6f0001;
constexpr uint64_t kStaticAppPhnum = 0x7a6f0002;
constexpr uint64_t kStaticAppEntry = 0x7a6f0003;
// Written by the runtime: the function the program's start registers to run
// at exit (in the place of the dynamic loader's own).
constexpr uint64_t kStaticExitHook = 0x7a6f0004;
} // namespace loader
