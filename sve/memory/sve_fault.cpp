#include "sve_fault.h"

uint32_t SVELibInitialized;

int SVEInitialize() {
  if (SVELibInitialized) return 1;
  // The SIGSEGV and SIGBUS handlers are installed here once faulting loads
  // have a recovery path.
  SVELibInitialized = 1;
  return 1;
}
