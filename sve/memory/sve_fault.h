// Fault recovery for emulated memory instructions.
#pragma once

#include <cstdint>

extern uint32_t SVELibInitialized;

// Called once as the library loads, after the decode maps exist. Returns 1;
// a second call does nothing.
int SVEInitialize();
